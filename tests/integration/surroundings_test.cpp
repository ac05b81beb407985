// What the library has to do with the process around it: signals, standard error, exit, and calls that come
// from inside the listener.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <csignal>
#include <cstdlib>

#include "testkit/temporary_directory.h"
#include "tests/event/watchdog.h"
#include "tests/integration/noting_listener.h"
#include "tests/server/fed_server.h"
#include "tests/support/captured_stderr.h"

namespace {

using testing::ElementsAre;

TEST(Surroundings, ThreadsBlockTheSignalsThatTheConstructingThreadBlocks) {
    const watchdog guard;
    bool first_blocked = false;
    bool second_blocked = true;
    const auto listener = std::make_shared<noting_listener>([&](const std::string&) {
        sigset_t mask;
        pthread_sigmask(SIG_SETMASK, nullptr, &mask);
        first_blocked = sigismember(&mask, SIGUSR1) == 1;
        second_blocked = sigismember(&mask, SIGUSR2) == 1;
    });
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGUSR1);
    ASSERT_EQ(pthread_sigmask(SIG_BLOCK, &blocked, &before), 0);
    spi::SpiServer server(listener, "/temp/dab", "/nowhere");
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    server.ResendNowNext();
    ASSERT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1)));
    EXPECT_TRUE(first_blocked);
    EXPECT_FALSE(second_blocked);
}

TEST(Surroundings, OrdinaryUsePrintsNothing) {
    const watchdog guard;
    const temporary_directory logos;
    const captured_stderr log;
    const auto listener = std::make_shared<noting_listener>();
    {
        spi::SpiServer server(listener, "/temp/dab", logos.path().string());
        broadcast sent;
        sent.tune(server);
        sent.feed_si(server);
        sent.feed_pi(server);
        ASSERT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1)));
        sent.feed_logo(server);
        server.ResendNowNext();
        server.SetCurrentService(sent.service, 0);
        ASSERT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1)));
    }
    EXPECT_EQ(listener->texts().size(), 6U);
    EXPECT_EQ(log.text(), "");
}

TEST(Surroundings, TheProcessMayExitWhileAServerWorks) {
    const auto exit_at_work = [] {
        static spi::SpiServer* const alive = make_server("/nowhere").release();
        broadcast sent;
        for (int i = 0; i < 200; ++i)
            sent.feed_all(*alive);
        std::exit(7);
    };
    EXPECT_EXIT(exit_at_work(), testing::ExitedWithCode(7), "");
}

TEST(Surroundings, AListenerMayCallTheServerWhileTheHostDoesNot) {
    const watchdog guard;
    spi::SpiServer* called = nullptr;
    int calls = 0;
    const auto listener = std::make_shared<noting_listener>([&](const std::string&) {
        if (++calls < 3) called->ResendNowNext();
    });
    spi::SpiServer server(listener, "/temp/dab", "/nowhere");
    called = &server;
    server.ResendNowNext();
    ASSERT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1)));
    EXPECT_THAT(listener->texts(), ElementsAre("now  next ", "now  next ", "now  next "));
}

TEST(Surroundings, InsideTheListenerItNeverBecomesQuiet) {
    const watchdog guard;
    bool quiet_inside = true;
    const auto listener = std::make_shared<noting_listener>(
        [&](const std::string&) { quiet_inside = spi::wait_until_quiet(std::chrono::milliseconds(10)); });
    spi::SpiServer server(listener, "/temp/dab", "/nowhere");
    server.ResendNowNext();
    ASSERT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1)));
    EXPECT_FALSE(quiet_inside);
    EXPECT_EQ(listener->texts().size(), 1U);
}

}  // namespace

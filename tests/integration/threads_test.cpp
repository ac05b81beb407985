// The library's threads, the host's calls, and the listener's thread.
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <climits>
#include <set>

#include "testkit/temporary_directory.h"
#include "tests/event/watchdog.h"
#include "tests/integration/noting_listener.h"
#include "tests/server/fed_server.h"
#include "tests/server/live_threads.h"

namespace {

TEST(Threads, AreSixForEachServerAndNoneAfterwards) {
    const watchdog guard;
    EXPECT_TRUE(live_threads_become(0));
    {
        const auto first = make_server("/nowhere");
        EXPECT_TRUE(live_threads_become(6));
        {
            const auto second = make_server("/nowhere");
            EXPECT_TRUE(live_threads_become(12));
        }
        EXPECT_TRUE(live_threads_become(6));
    }
    EXPECT_TRUE(live_threads_become(0));
}

struct BlockedListener : testing::Test {
    const watchdog guard;
    temporary_directory logos;
    broadcast sent;
    gate may_return;
    std::shared_ptr<noting_listener> listener =
        std::make_shared<noting_listener>([this](const std::string&) { may_return.wait(); });
    std::unique_ptr<spi::SpiServer> server =
        std::make_unique<spi::SpiServer>(listener, "/temp/dab", logos.path().string());

    // The listener stays in its first call.
    void block() {
        sent.tune(*server);
        sent.feed_si(*server);
        ASSERT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1)));
        server->ResendNowNext();
        listener->calls.wait_for(1);
    }
};

TEST_F(BlockedListener, HoldsUpNoCallOfTheHost) {
    block();
    for (int i = 0; i < 1000; ++i) {
        server->ResendNowNext();
        sent.feed_object(*server, 1, sent.pi, std::to_string(i));
    }
    sent.feed_all(*server);
    // All of that has returned, and the listener is still in its first call.
    EXPECT_EQ(listener->calls.all().size(), 1U);
    may_return.open();
    ASSERT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1)));
    EXPECT_GT(listener->calls.all().size(), 1000U);
}

TEST_F(BlockedListener, HoldsUpNoOtherWorker) {
    block();
    const int written = inotify_init1(IN_CLOEXEC);
    ASSERT_NE(inotify_add_watch(written, logos.path().c_str(), IN_CLOSE_WRITE), -1);
    sent.feed_logo(*server);
    char about[sizeof(inotify_event) + NAME_MAX + 1];
    EXPECT_GT(read(written, about, sizeof about), 0);  // the logo store has gone on
    close(written);
    EXPECT_TRUE(std::filesystem::exists(logos / "E1C2210_4.PNG"));
    EXPECT_EQ(listener->calls.all().size(), 1U);
    may_return.open();
}

TEST_F(BlockedListener, IsNotQuietUntilItReturns) {
    block();
    EXPECT_FALSE(spi::wait_until_quiet(std::chrono::milliseconds(0)));
    EXPECT_FALSE(spi::wait_until_quiet(std::chrono::milliseconds(20)));
    may_return.open();
    EXPECT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1)));
}

TEST_F(BlockedListener, IsWaitedForByTheServersEnd) {
    block();
    for (int i = 0; i < 200; ++i)
        server->ResendNowNext();
    journal<int> ended;
    std::thread destroyer([&] {
        server.reset();
        ended.add(1);
    });
    EXPECT_TRUE(ended.all().empty());
    may_return.open();
    destroyer.join();
    EXPECT_EQ(ended.all().size(), 1U);
    EXPECT_EQ(listener.use_count(), 1);
    EXPECT_TRUE(live_threads_become(0));
}

TEST_F(BlockedListener, IsCalledOnOneThreadOnlyAndNeverOnTheHosts) {
    may_return.open();
    block();
    ASSERT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1)));
    sent.feed_pi(*server);
    sent.feed_logo(*server);
    ASSERT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1)));
    std::set<std::thread::id> threads;
    for (const noted_call& call : listener->calls.all())
        threads.insert(call.thread);
    EXPECT_EQ(listener->calls.all().size(), 6U);
    EXPECT_EQ(threads.size(), 1U);
    EXPECT_EQ(threads.count(std::this_thread::get_id()), 0U);
}

TEST_F(BlockedListener, IsReleasedWithTheServer) {
    may_return.open();
    sent.feed_all(*server);
    server.reset();
    EXPECT_EQ(listener.use_count(), 1);
}

}  // namespace

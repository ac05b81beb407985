// A listener that throws ends the notifications, and nothing else.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "testkit/temporary_directory.h"
#include "tests/event/watchdog.h"
#include "tests/integration/noting_listener.h"
#include "tests/server/fed_server.h"
#include "tests/server/live_threads.h"
#include "tests/support/captured_debug.h"

namespace {

struct ThrowingListener : testing::Test {
    const watchdog guard;
    captured_debug debug;
    temporary_directory logos;
    broadcast sent;

    // The first call whose text begins with `prefix` throws; afterwards no call comes, the logo store still
    // works, and the server's end returns.
    template <class Throw>
    void throw_at(const std::string& prefix, Throw throw_it, int line, const std::string& report) {
        gate thrown;
        const auto listener = std::make_shared<noting_listener>([&](const std::string& text) {
            if (text.rfind(prefix, 0) != 0) return;
            thrown.open();
            throw_it();
        });
        {
            spi::SpiServer server(listener, "/temp/dab", logos.path().string());
            sent.tune(server);
            sent.feed_si(server);
            ASSERT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1)));  // the logo is announced
            if (prefix == "logo") sent.feed_logo(server);
            sent.feed_pi(server);
            if (prefix != "logo") sent.feed_logo(server);
            server.ResendNowNext();
            thrown.wait();
            server.ResendNowNext();
        }
        const auto texts = listener->texts();
        ASSERT_FALSE(texts.empty());
        EXPECT_EQ(texts.back().rfind(prefix, 0), 0U) << texts.back();
        for (std::size_t i = 0; i + 1 < texts.size(); ++i)
            EXPECT_NE(texts[i].rfind(prefix, 0), 0U);
        EXPECT_TRUE(std::filesystem::exists(logos / "E1C2210_4.PNG"));
        EXPECT_EQ(listener.use_count(), 1);
        EXPECT_TRUE(live_threads_become(0));
        EXPECT_TRUE(spi::wait_until_quiet(std::chrono::milliseconds(0)));

        const auto messages = debug.take();
        ASSERT_EQ(messages.size(), 2U);
        EXPECT_EQ(messages[0].function, "Entry");
        EXPECT_EQ(messages[0].line, line);
        EXPECT_EQ(messages[0].text, report);
        EXPECT_EQ(messages[1].line, line + 1);
    }
};

TEST_F(ThrowingListener, AtAProgramme) {
    throw_at(
        "programme", [] { throw std::runtime_error("no more"); }, 431,
        "catch exception. thread name [dabspi], what [no more]\n");
}
TEST_F(ThrowingListener, AtNowAndNext) {
    throw_at(
        "now", [] { throw std::bad_alloc(); }, 431,
        "catch exception. thread name [dabspi], what [std::bad_alloc]\n");
}
TEST_F(ThrowingListener, AtALogo) {
    throw_at(
        "logo", [] { throw 42; }, 436, "catch exception. thread name [dabspi]\n");
}

}  // namespace

// The end of a server that has work left. (That it ends thousands of times in a row: tests/stress.)
#include <gtest/gtest.h>

#include "testkit/temporary_directory.h"
#include "tests/event/watchdog.h"
#include "tests/integration/noting_listener.h"
#include "tests/server/fed_server.h"
#include "tests/server/live_threads.h"
#include "tests/support/captured_debug.h"
#include "tests/support/captured_stderr.h"

namespace {

struct Shutdown : testing::Test {
    const watchdog guard;
    captured_debug debug;
    captured_stderr log;  // what is still on its way to a worker that has left is logged
    temporary_directory logos;
    broadcast sent;

    void TearDown() override {
        EXPECT_TRUE(live_threads_become(0));
        EXPECT_TRUE(spi::wait_until_quiet(std::chrono::milliseconds(0)));
        EXPECT_TRUE(debug.take().empty());
    }
};

TEST_F(Shutdown, WithFullQueuesReturnsAndReportsNothingOutOfOrder) {
    const auto listener = std::make_shared<noting_listener>();
    {
        spi::SpiServer server(listener, "/temp/dab", logos.path().string());
        sent.tune(server);
        sent.feed_pi(server);
        ASSERT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1)));
        listener->calls.take();
        for (int i = 0; i < 2000; ++i)
            server.ResendNowNext();
    }
    // The notifier is asked to end first: what the database still sends it afterwards may be told or not.
    const auto texts = listener->texts();
    EXPECT_LE(texts.size(), 2000U);
    for (const std::string& text : texts)
        EXPECT_EQ(text, "now Morning next Noon");
    EXPECT_EQ(listener.use_count(), 1);
}

TEST_F(Shutdown, WithoutAListenerDropsNotifications) {
    spi::SpiServer server(nullptr, "/temp/dab", logos.path().string());
    sent.feed_all(server);
}

}  // namespace

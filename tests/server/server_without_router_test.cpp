// A server without its router and without one of its workers: the answer for the one goes through the other.
#include <gtest/gtest.h>

#include "tests/event/thread_faults.h"
#include "tests/event/watchdog.h"
#include "tests/server/fed_server.h"
#include "tests/server/live_threads.h"
#include "tests/support/captured_debug.h"
#include "tests/support/captured_stderr.h"

namespace {

class WithoutRouterAndWorker : public testing::TestWithParam<unsigned> {};

TEST_P(WithoutRouterAndWorker, IsDestroyedAllTheSame) {
    const watchdog guard(std::chrono::seconds(30));
    const captured_debug debug;
    const captured_stderr log;
    {
        const thread_faults threads([](unsigned n) { return n == 2 || n == GetParam(); });
        broadcast sent;
        const auto server = make_server("/nowhere");
        sent.feed_all(*server);
    }
    EXPECT_TRUE(live_threads_become(0));
    EXPECT_TRUE(spi::wait_until_quiet(std::chrono::milliseconds(0)));
}

INSTANTIATE_TEST_SUITE_P(OfEachWorker, WithoutRouterAndWorker, testing::Values(3U, 4U, 5U, 6U));

}  // namespace

// Construction that fails half-way, at every allocation in turn, leaves nothing behind.
#include <gtest/gtest.h>

#include <new>

#include "tests/event/allocation_faults.h"
#include "tests/event/thread_faults.h"
#include "tests/event/watchdog.h"
#include "tests/server/fed_server.h"
#include "tests/server/live_threads.h"

namespace {

constexpr int kHostThread = 0;

// How many constructions failed before one succeeded.
int failed_constructions(int thread, allocation_faults::how how, long last) {
    const auto listener = std::make_shared<forgetful_listener>();
    // Too long to be kept in place: the copies take memory.
    const std::string root = "/a/directory/whose/name/is/too/long/to/be/kept/in/the/string/itself";
    const thread_faults threads;
    {  // what the process keeps for good is made before any memory is missing
        const spi::SpiServer server(listener, root, root);
    }
    int failures = 0;
    for (long n = 1; n < last; ++n) {
        bool thrown = false;
        bool struck = false;
        {
            const allocation_faults fault(thread, n, how);
            try {
                const spi::SpiServer server(listener, root, root);
            } catch (const std::bad_alloc&) {
                thrown = true;
            }
            struck = fault.struck();
        }
        EXPECT_TRUE(live_threads_become(0)) << "allocation " << n;
        EXPECT_TRUE(spi::wait_until_quiet(std::chrono::milliseconds(0))) << "allocation " << n;
        EXPECT_EQ(listener.use_count(), 1) << "allocation " << n;
        if (!struck) return failures;
        if (thrown) ++failures;
    }
    ADD_FAILURE() << "never succeeded";
    return failures;
}

TEST(ServerConstruction, WithOneAllocationFailingLeavesNothingBehind) {
    const watchdog guard;
    EXPECT_GT(failed_constructions(kHostThread, allocation_faults::kOnce, 1000), 20);
}

TEST(ServerConstruction, WithoutMemoryFromSomePointOnLeavesNothingBehind) {
    const watchdog guard;
    EXPECT_GT(failed_constructions(kHostThread, allocation_faults::kFromThenOn, 1000), 20);
}

TEST(ServerConstruction, WithAnyThreadsAllocationFailingLeavesNothingBehind) {
    const watchdog guard;
    EXPECT_GT(failed_constructions(allocation_faults::kEveryThread, allocation_faults::kOnce, 1000), 5);
    EXPECT_GT(failed_constructions(allocation_faults::kEveryThread, allocation_faults::kFromThenOn, 1000), 5);
}

}  // namespace

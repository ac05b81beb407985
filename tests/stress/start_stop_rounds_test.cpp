// Fifty thousand lives of a server, several at the same time, with one object and without.
//
// Most of a life is waiting for threads to be scheduled, so several lanes, each on a thread of its own, take
// turns on the processors: servers are made, fed and destroyed while others are.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "testkit/temporary_directory.h"
#include "tests/event/watchdog.h"
#include "tests/server/fed_server.h"
#include "tests/stress/process_resources.h"
#include "tests/stress/stress_settings.h"
#include "tests/support/captured_debug.h"
#include "tests/support/captured_stderr.h"

namespace {

constexpr unsigned kRounds = DABSPI_START_STOP_ROUNDS;
constexpr unsigned kLanes = 4;

struct StartStop : testing::Test {
    const watchdog guard{std::chrono::minutes(14)};
    captured_debug debug;
    captured_stderr log;  // what is still on its way to a worker that has left is logged
    temporary_directory logos;

    template <class Life>
    void live(unsigned rounds, Life life) {
        make_server(logos.path().string());  // what the process keeps for good is made before the count
        const process_resources before;
        std::atomic<unsigned> lived{0};
        std::vector<std::thread> lanes;
        for (unsigned lane = 0; lane < kLanes; ++lane)
            lanes.emplace_back([&, rounds] {
                while (lived++ < rounds)
                    life();
            });
        for (std::thread& lane : lanes)
            lane.join();
        EXPECT_TRUE(no_thread_of_the_library_lives());
        EXPECT_TRUE(before.are_back());
        EXPECT_TRUE(spi::wait_until_quiet(std::chrono::milliseconds(0)));
        EXPECT_TRUE(debug.take().empty());
    }
};

TEST_F(StartStop, WithOneObjectLeavesNothingBehind) {
    live(stress_rounds(kRounds / 2), [this] {
        broadcast sent;
        const auto server = make_server(logos.path().string());
        sent.tune(*server);
        sent.feed_pi(*server);
    });
}

TEST_F(StartStop, AtOnceLeavesNothingBehind) {
    live(stress_rounds(kRounds / 2), [this] { make_server(logos.path().string()); });
    EXPECT_EQ(log.text(), "");
}

}  // namespace

// Fifty thousand servers, several at the same time, fed with one object and without.
//
// Most of a round is waiting for threads to be scheduled, so several threads take turns on the processors:
// servers are made, fed and destroyed while others are.
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
constexpr unsigned kThreads = 4;

struct StartStop : testing::Test {
    const watchdog guard{std::chrono::minutes(14)};
    captured_debug debug;
    captured_stderr log;  // what is still on its way to a worker that has left is logged
    temporary_directory logos;

    template <class Round>
    void repeat(unsigned rounds, Round one_round) {
        make_server(logos.path().string());  // what the process keeps for good is made before the count
        const process_resources before;
        std::atomic<unsigned> begun{0};
        std::vector<std::thread> threads;
        for (unsigned thread = 0; thread < kThreads; ++thread)
            threads.emplace_back([&, rounds] {
                while (begun++ < rounds)
                    one_round();
            });
        for (std::thread& thread : threads)
            thread.join();
        EXPECT_TRUE(no_thread_of_the_library_lives());
        EXPECT_TRUE(before.are_back());
        EXPECT_TRUE(spi::wait_until_quiet(std::chrono::milliseconds(0)));
        EXPECT_TRUE(debug.take().empty());
    }
};

TEST_F(StartStop, WithOneObjectLeavesNothingBehind) {
    repeat(stress_rounds(kRounds / 2), [this] {
        broadcast sent;
        const auto server = make_server(logos.path().string());
        sent.tune(*server);
        sent.feed_pi(*server);
    });
}

TEST_F(StartStop, AtOnceLeavesNothingBehind) {
    repeat(stress_rounds(kRounds / 2), [this] { make_server(logos.path().string()); });
    EXPECT_EQ(log.text(), "");
}

}  // namespace

// A server under shuffled timing, round after round, each with a seed of its own.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "testkit/temporary_directory.h"
#include "tests/event/thread_faults.h"
#include "tests/event/watchdog.h"
#include "tests/server/fed_server.h"
#include "tests/stress/process_resources.h"
#include "tests/stress/stress_settings.h"
#include "tests/stress/sync_points.h"
#include "tests/support/captured_debug.h"
#include "tests/support/captured_stderr.h"

struct shuffled_rounds : testing::Test {
    const watchdog guard{std::chrono::minutes(14)};
    captured_debug debug;
    captured_stderr log;  // what is still on its way to a worker that has left is logged
    temporary_directory logos;

    // Plays the rounds of each seed; after each nothing of the library may be left. `fails` decides which of
    // the library's threads cannot be created in a round.
    void play(unsigned usual_rounds, const std::function<void(unsigned round)>& one,
              const std::function<bool(unsigned round, unsigned thread)>& fails = {}) {
        make_server(logos.path().string());  // what the process keeps for good is made before the count
        const process_resources before;
        for (const std::uint64_t seed : stress_seeds()) {
            print_seed(seed);
            for (unsigned round = 0; round < stress_rounds(usual_rounds); ++round) {
                {
                    const thread_faults threads(
                        [&](unsigned thread) { return fails && fails(round, thread); });
                    const shuffled_timing shuffled(round_seed(seed, round));
                    one(round);
                    EXPECT_GT(shuffled.points(), 0U);  // a build without the wrappers would shuffle nothing
                }
                EXPECT_TRUE(no_thread_of_the_library_lives());
                EXPECT_TRUE(spi::wait_until_quiet(std::chrono::milliseconds(0)));
                if (HasFailure()) {
                    FAIL() << "in round " << round << " with DABSPI_STRESS_SEED=" << seed;
                }
            }
        }
        EXPECT_TRUE(before.are_back());
    }
};

// Days and months of reception through the core interface. DABSPI_SOAK_DAYS says how many days.
// DABSPI_SOAK_HOME_DAYS does for the runs that stay in one ensemble.
//
// Live heap is compared at the end of every ten days. Resident memory is compared in long runs only, from 100
// days on: those of scripts/soak.
#include <gtest/gtest.h>

#include <cstdio>
#include <stdexcept>
#include <string>

#include "testkit/temporary_directory.h"
#include "tests/soak/core_receiver.h"
#include "tests/soak/long_reception.h"

namespace soak {
namespace {

TEST(LongReception, EveryNotificationComesOnceAndNothingGrowsOverTheDays) {
    const int days = from_environment("DABSPI_SOAK_DAYS", kSanitized ? 4 : 40);
    temporary_directory logos;
    const auto make = [&] { return std::make_unique<core_receiver>(logos.path().string()); };
    // The last day is 1 March of a leap year.
    const long end = spi_builder::mjd(2028, 3, 2);
    const long_reception_result result = play(make, logos.path().string(), days, end);
    print_table(result);

    expect_nothing_grew(result);
    EXPECT_EQ(result.listener_threads, 1U);
    if (days < 4) return;
    // The days must have had everything in them, or they have shown nothing.
    EXPECT_GT(result.model.read, 200U);
    EXPECT_GT(result.model.repeated, 50000U);
    EXPECT_GT(result.model.images_written, 20U);
    EXPECT_GT(result.model.images_skipped, 5U);
    EXPECT_GT(result.model.images_refused, 50U);
    EXPECT_GT(result.model.images_unknown, 5000U);
    EXPECT_GT(result.model.same_size, 100U);
    EXPECT_GT(result.database.stored, 400);
    EXPECT_GT(result.database.refused, 400);
    EXPECT_GT(result.database.taken, 100);
    EXPECT_GT(result.database.wrapped_keys, 5);
    EXPECT_GT(result.database.updates, 100);
    EXPECT_GT(result.database.updates_without_next, 10);
    EXPECT_GT(result.database.end_minute_still_running, 5);
    EXPECT_GT(result.database.switched_to_tomorrow, 1);
    if (days < kPeriod) return;
    EXPECT_GT(result.database.untitled_now, 1);
    EXPECT_GT(result.database.nothing_on, 100);
    EXPECT_GT(result.database.retired, 100);
    EXPECT_GE(result.model.ensembles, 4U);
}

// Two periods at least: what one adds is the difference of their ends.
int home_days() {
    const int days = from_environment("DABSPI_SOAK_HOME_DAYS", 2 * kPeriod);
    if (days < 2 * kPeriod)
        throw std::invalid_argument("DABSPI_SOAK_HOME_DAYS is " + std::to_string(days) +
                                    "; what a period adds shows from " + std::to_string(2 * kPeriod) +
                                    " days on");
    return days;
}

// What one period adds to the live heap, on average of the periods.
double added_in_a_period(const long_reception_result& result) {
    const std::vector<sample>& all = result.samples;
    if (all.size() < 2) {
        ADD_FAILURE() << "the reception ended before its second period did";
        return 0;
    }
    const std::int64_t added = all.back().heap.bytes - all.front().heap.bytes;
    const double each = static_cast<double>(added) / static_cast<double>(all.size() - 1);
    std::printf("live heap added in %d days: %.0f bytes\n", kPeriod, each);
    return each;
}

// A receiver that stays with its ensemble keeps what nothing uses up: announcements of logos that never come
// (twelve sensible ones and 220 hostile ones a day here).
TEST(LongReception, InOneEnsembleOnlyAnnouncementsAddUp) {
    temporary_directory logos;
    const auto make = [&] { return std::make_unique<core_receiver>(logos.path().string()); };
    const long_reception_result result =
        play(make, logos.path().string(), home_days(), spi_builder::mjd(2028, 3, 2), {false, false});
    print_table(result);
    const double added = added_in_a_period(result);
    EXPECT_GT(added, 232 * 40 * kPeriod);  // bytes of an announcement
    EXPECT_LT(added, 232 * 100 * kPeriod);
}

// A date that jumps by two days leaves a day behind; in a car that is not unplugged this happens in every
// garage. It ends with the ensemble.
TEST(LongReception, InOneEnsembleEachJumpOfTheDateLeavesADayBehind) {
    temporary_directory logos;
    const auto make = [&] { return std::make_unique<core_receiver>(logos.path().string()); };
    const long_reception_result result =
        play(make, logos.path().string(), home_days(), spi_builder::mjd(2028, 3, 2), {false, true});
    print_table(result);
    const double added = added_in_a_period(result);
    EXPECT_GT(added, 12 * 20 * 100);  // services, programmes, bytes of a programme at least
    EXPECT_LT(added, 12 * 40 * 400 + 232 * 100 * kPeriod);
}

}  // namespace
}  // namespace soak

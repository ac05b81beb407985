#include "tools/air/fic/broadcast_clock.h"

#include <gtest/gtest.h>

#include "tests/tools/air/fic/fed.h"

namespace {

namespace mb = multiplex_builder;
using air_tests::fic_feeder;

std::string local(unsigned day, unsigned hour, unsigned minute, int half_hours) {
    fic_feeder feed;
    feed({mb::fig_0_10(day, hour, minute), mb::fig_0_9(half_hours, 0xE1)});
    return feed.minutes.empty() ? "" : feed.minutes.back();
}

TEST(BroadcastClock, SaysNothingBeforeBothHaveCome) {
    const auto time = mb::fig_0_10(58000, 12, 0);
    const auto offset = mb::fig_0_9(2, 0xE1);
    fic_feeder feed;
    feed({time})({time});
    EXPECT_TRUE(feed.minutes.empty());
    feed({offset});
    EXPECT_EQ(feed.minutes, std::vector<std::string>{"2017-09-04 13:00"});
    fic_feeder other;
    other({offset})({offset});
    EXPECT_TRUE(other.minutes.empty());
    other({time});
    EXPECT_EQ(other.minutes, feed.minutes);
}

TEST(BroadcastClock, TheOffsetIsSignAndMagnitude) {
    EXPECT_EQ(local(58000, 12, 0, -2), "2017-09-04 11:00");
    EXPECT_EQ(local(58000, 12, 0, 11), "2017-09-04 17:30");
    EXPECT_EQ(local(58000, 12, 0, -7), "2017-09-04 08:30");
    EXPECT_EQ(local(58000, 12, 0, 24), "2017-09-05 00:00");
    EXPECT_EQ(local(58000, 12, 0, 0), "2017-09-04 12:00");
}

TEST(BroadcastClock, LocalTimeCrossesMidnightMonthAndYear) {
    EXPECT_EQ(local(mb::day_number(2025, 12, 31), 23, 30, 2), "2026-01-01 00:30");
    EXPECT_EQ(local(mb::day_number(2026, 1, 1), 0, 15, -1), "2025-12-31 23:45");
    EXPECT_EQ(local(mb::day_number(2024, 2, 28), 23, 59, 1), "2024-02-29 00:29");
    EXPECT_EQ(local(mb::day_number(2026, 2, 28), 23, 59, 1), "2026-03-01 00:29");
    EXPECT_EQ(local(mb::day_number(2026, 3, 1), 1, 0, -4), "2026-02-28 23:00");
}

TEST(BroadcastClock, EveryDateIsThatOfTheCalendar) {
    unsigned number = mb::day_number(1999, 12, 31);
    for (const char* expected : {"1999-12-31 00:00", "2000-01-01 00:00"})
        EXPECT_EQ(local(number++, 0, 0, 0), expected);
    EXPECT_EQ(local(mb::day_number(2000, 2, 29), 0, 0, 0), "2000-02-29 00:00");
    EXPECT_EQ(local(mb::day_number(2100, 3, 1), 0, 0, 0), "2100-03-01 00:00");
    EXPECT_EQ(local(0, 0, 0, -1), "1858-11-16 23:30");
    EXPECT_EQ(local(58000, 0, 0, 0), "2017-09-04 00:00");
}

TEST(BroadcastClock, EachMinuteIsSaidOnceInBothForms) {
    fic_feeder feed;
    feed({mb::fig_0_9(0, 0xE1)});
    for (unsigned second = 0; second < 180; ++second) {
        const unsigned minute = second / 60;
        feed({second % 2 == 0 ? mb::fig_0_10(58000, 23, 58 + minute % 2, 1000 * (second % 60) + 999)
                              : mb::fig_0_10(58000, 23, 58 + minute % 2)});
    }
    EXPECT_EQ(feed.minutes,
              (std::vector<std::string>{"2017-09-04 23:58", "2017-09-04 23:59", "2017-09-04 23:58"}));
}

TEST(BroadcastClock, ImpossibleTimesAreNone) {
    EXPECT_EQ(local(58000, 24, 0, 0), "");
    EXPECT_EQ(local(58000, 12, 60, 0), "");
}

}  // namespace

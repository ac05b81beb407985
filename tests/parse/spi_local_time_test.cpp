// From coded times to local dates and times.
#include <gtest/gtest.h>

#include "src/parse/spi_time_point.h"
#include "tests/parse/reading.h"

namespace {

using spi::MotDateTime;
using spi::SpiTimePoint;

SpiTimePoint point_of(std::uint32_t mjd, unsigned hour, unsigned minute, int half_hours = 0) {
    SpiTimePoint point;
    point.mjd = mjd;
    point.hour = static_cast<std::uint8_t>(hour);
    point.minute = static_cast<std::uint8_t>(minute);
    point.lto = static_cast<std::int8_t>(half_hours);
    return point;
}

TEST(SpiLocalTime, OfTheStart) {
    EXPECT_EQ(point_of(57754, 22, 30).local_time(0), date_time_of(2017, 1, 1, 22, 30));
}

TEST(SpiLocalTime, OfTheEndIsPastMidnight) {
    EXPECT_EQ(point_of(57754, 22, 30).local_time(5400), date_time_of(2017, 1, 2, 0, 0));
    EXPECT_EQ(point_of(57754, 22, 30).local_time(5399), date_time_of(2017, 1, 1, 23, 59));
}

TEST(SpiLocalTime, OffsetMayLeadToTheNextDay) {
    EXPECT_EQ(point_of(57754, 23, 30, 2).local_time(0), date_time_of(2017, 1, 2, 0, 30));
    EXPECT_EQ(point_of(57754, 22, 59, 2).local_time(0), date_time_of(2017, 1, 1, 23, 59));
    EXPECT_EQ(point_of(57754, 23, 0, 2).local_time(0), date_time_of(2017, 1, 2, 0, 0));
}

TEST(SpiLocalTime, SecondsOfThePointAreIgnored) {
    SpiTimePoint point = point_of(57754, 10, 0);
    point.second = 59;
    EXPECT_EQ(point.local_time(59), date_time_of(2017, 1, 1, 10, 0));
}

TEST(SpiLocalTime, OffsetCountsWholeMinutesOnly) {
    const SpiTimePoint point = point_of(57754, 10, 0);
    EXPECT_EQ(point.local_time(59), date_time_of(2017, 1, 1, 10, 0));
    EXPECT_EQ(point.local_time(60), date_time_of(2017, 1, 1, 10, 1));
    EXPECT_EQ(point.local_time(65535), date_time_of(2017, 1, 2, 4, 12));
}

TEST(SpiLocalTime, BeforeMidnightIsTheDayBeforeAndTheHourOutOfRange) {
    // 30 minutes before midnight UTC: minute 65506 of the day.
    EXPECT_EQ(point_of(57754, 0, 0, -1).local_time(0), date_time_of(2016, 12, 31, 67, 46));
    EXPECT_EQ(point_of(57754, 1, 30, -4).local_time(0), date_time_of(2016, 12, 31, 67, 46));
    // One minute before, and as far back as a coded offset goes (60 half-hours are not even a day and a
    // half).
    EXPECT_EQ(point_of(57754, 0, 29, -1).local_time(0), date_time_of(2016, 12, 31, 68, 15));
    EXPECT_EQ(point_of(57754, 0, 0, -30).local_time(0), date_time_of(2016, 12, 31, 53, 16));
}

TEST(SpiLocalTime, MidnightItselfBelongsToTheDay) {
    EXPECT_EQ(point_of(57754, 0, 30, -1).local_time(0), date_time_of(2017, 1, 1, 0, 0));
}

TEST(SpiLocalTime, DurationMayLeadBackIntoTheDay) {
    EXPECT_EQ(point_of(57754, 0, 0, -1).local_time(1800), date_time_of(2017, 1, 1, 0, 0));
    EXPECT_EQ(point_of(57754, 0, 0, -1).local_time(1740), date_time_of(2016, 12, 31, 68, 15));
}

TEST(SpiLocalTime, OnlyOneDayIsCarried) {
    // 31 hours 63 minutes and 15 hours: 2823 minutes, then past 2880 and 3915.
    EXPECT_EQ(point_of(57754, 31, 63, 30).local_time(0), date_time_of(2017, 1, 2, 23, 3));
    EXPECT_EQ(point_of(57754, 31, 63, 30).local_time(57 * 60), date_time_of(2017, 1, 2, 0, 0));
    EXPECT_EQ(point_of(57754, 31, 63, 30).local_time(65535), date_time_of(2017, 1, 2, 17, 15));
    // A whole day back is one day and minute 0; further back is still one day.
    EXPECT_EQ(point_of(57754, 0, 0, -48).local_time(0), date_time_of(2016, 12, 31, 0, 0));
    EXPECT_EQ(point_of(57754, 0, 0, -49).local_time(0), date_time_of(2016, 12, 31, 67, 46));
}

TEST(SpiLocalDate, FollowsTheCalendarFromMarch1900ToFebruary2100) {
    const std::uint32_t last = spi_builder::mjd(2100, 2, 28);
    constexpr unsigned kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    unsigned year = 1900;
    unsigned month = 3;
    unsigned day = 1;
    for (std::uint32_t mjd = spi_builder::mjd(1900, 3, 1); mjd <= last; ++mjd) {
        ASSERT_EQ(point_of(mjd, 12, 0).local_time(0), date_time_of(year, month, day, 12, 0)) << mjd;
        const bool leap = month == 2 && year % 4 == 0;
        if (++day > kDays[month - 1] + (leap ? 1U : 0U)) {
            day = 1;
            if (++month > 12) {
                month = 1;
                ++year;
            }
        }
    }
}

TEST(SpiLocalDate, FormulaIsKeptWhereTheCalendarDiffers) {
    EXPECT_EQ(spi_builder::mjd(2100, 3, 1), 88128U);
    EXPECT_EQ(point_of(88128, 0, 0).local_time(0), date_time_of(2100, 2, 29));
}

TEST(SpiLocalDate, DayZeroIsTheNineteenthOfMonth255In1859) {
    EXPECT_EQ(SpiTimePoint().local_time(0), date_time_of(1859, 255, 19));
}

TEST(SpiLocalDate, DayBeforeDayZeroDoesNotWrap) {
    EXPECT_EQ(point_of(0, 0, 0, -1).local_time(0), date_time_of(1859, 255, 18, 67, 46));
}

TEST(SpiLocalDate, LargestCodedDay) {
    // 2217-09-27 by the calendar; the formula counts leap days in 2100 and 2200.
    EXPECT_EQ(point_of(131071, 0, 0).local_time(0), date_time_of(2217, 9, 25));
}

// ETSI EN 300 468, Annex C, as it is printed there, in double precision.
MotDateTime by_the_formula(double mjd) {
    const int y = static_cast<int>((mjd - 15078.2) / 365.25);
    const int days_of_years = static_cast<int>(y * 365.25);
    const int m = static_cast<int>((mjd - 14956.1 - days_of_years) / 30.6001);
    const int k = m == 14 || m == 15 ? 1 : 0;
    return date_time_of(static_cast<std::uint16_t>(y + 1900 + k), static_cast<std::uint8_t>(m - 1 - k * 12),
                        static_cast<std::uint8_t>(static_cast<int>(mjd) - 14956 - days_of_years -
                                                  static_cast<int>(m * 30.6001)),
                        0, 0);
}

TEST(SpiLocalDate, IsWhatTheFormulaGivesForEveryDayThatCanBeCodedAndFarBeyond) {
    for (std::uint32_t day = 0; day < 1'100'000; ++day)
        ASSERT_EQ(point_of(day, 0, 0).local_time(0), by_the_formula(day)) << day;
}

}  // namespace

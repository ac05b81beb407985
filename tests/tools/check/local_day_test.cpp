#include "tools/check/local_day.h"

#include <gtest/gtest.h>

#include "testkit/spi_builder.h"

namespace {

using namespace dabspi::check;

spi::MotDateTime clock_of(const char* date, const char* time) {
    spi::MotDateTime clock;
    clock.put_date(date);
    clock.put_time(time);
    return clock;
}

TEST(LocalDay, CountsMinutesFromTheFirstDayOfTheCount) {
    EXPECT_EQ(minute_of(clock_of("18581117", "0000")), 0);
    EXPECT_EQ(minute_of(clock_of("20260310", "0730")),
              static_cast<long>(spi_builder::mjd(2026, 3, 10)) * kDayMinutes + 450);
}

TEST(LocalDay, ComesBackAsTheSameDate) {
    for (const char* const date : {"19000301", "19991231", "20000229", "20260101", "20991231"}) {
        const spi::MotDateTime clock = clock_of(date, "2359");
        EXPECT_EQ(date_time_of(minute_of(clock)).date(), clock.date());
        EXPECT_EQ(date_time_of(minute_of(clock)).time(), "23:59");
    }
}

TEST(LocalDay, CarriesMonthsThatAreNone) {
    EXPECT_EQ(day_text(minute_of(clock_of("20251301", "0000")) / kDayMinutes), "2026-01-01");
}

TEST(LocalDay, IsSaidInWords) {
    const long minute = minute_of(clock_of("20260310", "0905"));
    EXPECT_EQ(minute_text(minute), "2026-03-10 09:05");
    EXPECT_EQ(clock_text(minute), "09:05");
    EXPECT_EQ(minutes_text(0), "0 min");
    EXPECT_EQ(minutes_text(59), "59 min");
    EXPECT_EQ(minutes_text(60), "1 h");
    EXPECT_EQ(minutes_text(1092), "18 h 12 min");
}

TEST(LocalDay, TakesAProgrammesOffset) {
    spi::PiScheduleProgramme programme;
    programme.time.mjd = 61109;
    programme.time.hour = 23;
    programme.time.minute = 30;
    programme.time.lto = 2;
    EXPECT_EQ(minute_text(local_start(programme)), "2026-03-11 00:30");
    programme.time.lto = -3;
    EXPECT_EQ(minute_text(local_start(programme)), "2026-03-10 22:00");
}

}  // namespace

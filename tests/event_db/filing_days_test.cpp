// Today and tomorrow: the local day and the start minute under which a programme is filed.
#include "tests/event_db/event_db_fixture.h"

namespace event_db {
namespace {

using FilingDays = EventDb;

TEST_F(FilingDays, TodayAndTomorrowAreFiledAndOtherDaysRefused) {
    at("1200");
    EXPECT_EQ(on_air(yesterday, "1000", 60, "Yesterday"), 1);
    EXPECT_EQ(on_air(today, "1000", 60, "Today"), 0);
    EXPECT_EQ(on_air(tomorrow, "1000", 60, "Tomorrow"), 0);
    EXPECT_EQ(on_air(day_after, "1000", 60, "Day after"), 1);
    EXPECT_EQ(on_air("20260401", "1000", 60, "Next month"), 1);
    EXPECT_EQ(on_air("20250302", "1000", 60, "Last year"), 1);
    expect_sent({"stored Today", "stored Tomorrow"});
}

TEST_F(FilingDays, TomorrowGoesOverTheEndsOfMonthsAndYears) {
    at("20251231", "1200");
    EXPECT_EQ(on_air("20260101", "1000", 60, "New year"), 0);
    EXPECT_EQ(on_air("20260102", "1000", 60, "Too far"), 1);
    at("20280228", "1200");
    EXPECT_EQ(on_air("20280229", "1000", 60, "Leap day"), 0);
    EXPECT_EQ(on_air("20280301", "1000", 60, "Too far"), 1);
    at("20270228", "1200");
    EXPECT_EQ(on_air("20270301", "1000", 60, "March"), 0);
    expect_sent({"stored New year", "stored Leap day", "stored March"});
}

TEST_F(FilingDays, ADateThatIsNoDateTakesNoProgrammes) {
    at("20260230", "1200");
    EXPECT_EQ(on_air("20260228", "1000", 60, "February"), 1);
    EXPECT_EQ(on_air("20260302", "1000", 60, "March"), 1);
    expect_nothing_sent();
}

TEST_F(FilingDays, TheCalendarBeginsInMarch1900) {
    spi::PiScheduleProgramme p;
    p.name = "Ancient";
    p.time.mjd = 15079;  // 1900-03-01, the first day for which the calendar formula holds
    at("19000301", "0000");
    EXPECT_EQ(file(p), 0);
    p.time.mjd = 15080;
    EXPECT_EQ(file(p), 0);
    p.time.mjd = 15081;
    EXPECT_EQ(file(p), 1);
}

TEST_F(FilingDays, ALocalTimeOffsetCarriesAStartIntoTheNextDay) {
    at(today, "1200");
    EXPECT_EQ(file(programme(today, "2330", 60, "Half past midnight", 2)), 0);  // 00:30 on 3 March
    forget_sent();
    EXPECT_EQ(on_air(tomorrow, "0030", 60, "Same minute"), 0);  // that minute of that day is taken
    expect_nothing_sent();
}

TEST_F(FilingDays, AStartThatTheOffsetCarriesIntoYesterdayIsRefused) {
    at(tomorrow, "1200");
    EXPECT_EQ(file(programme(tomorrow, "0010", 60, "Yesterday evening", -2)), 1);  // 23:10 on 2 March
    EXPECT_EQ(file(programme(today, "2330", 60, "Early today", 2)), 0);            // 00:30 on 3 March
    expect_sent({"stored Early today"});
}

TEST_F(FilingDays, AnOffsetCarriesOutOfTheDayAfterTomorrowToo) {
    at(today, "1200");
    EXPECT_EQ(file(programme(day_after, "0010", 60, "Late tomorrow", -2)), 0);  // 23:10 on 3 March
    EXPECT_EQ(file(programme(tomorrow, "2330", 60, "Too far", 2)), 1);          // 00:30 on 4 March
    expect_sent({"stored Late tomorrow"});
}

TEST_F(FilingDays, AnOffsetThatEndsExactlyAtMidnightBeginsTheNextDay) {
    at(today, "1200");
    EXPECT_EQ(file(programme(yesterday, "2300", 60, "Midnight", 2)), 0);
    EXPECT_EQ(file(programme(today, "0100", 60, "Midnight too", -2)), 0);  // 00:00 today: taken
    EXPECT_EQ(on_air("0000", 60, "And again"), 0);
    EXPECT_EQ(file(programme(yesterday, "2259", 60, "A minute before", 2)), 1);
    expect_sent({"stored Midnight"});
}

TEST_F(FilingDays, ANegativeStartIsFiledUnderAKeyOfItsOwn) {
    at(today, "2320");
    listen_to(station);
    // 00:10 UTC on 3 March, one hour behind: 23:10 on 2 March, filed behind every real minute of that day.
    EXPECT_EQ(file(programme(tomorrow, "0010", 60, "Wrapped", -2)), 0);
    EXPECT_EQ(on_air("2310", 60, "Plain"), 0);  // the same local minute, and not taken
    expect_sent({"stored Wrapped", "stored Plain", "now Plain, next -"});
    EXPECT_EQ(file(programme(tomorrow, "0010", 60, "Wrapped again", -2)), 0);  // this one is
    expect_nothing_sent();
}

TEST_F(FilingDays, HoursBeyondTheDayCarryIntoTheNextOne) {
    // Five bits hold hours up to 31: what a broadcast codes is taken.
    at(today, "1200");
    spi::PiScheduleProgramme p = programme(today, "0000", 60, "Hour 25");
    p.time.hour = 25;
    EXPECT_EQ(file(p), 0);
    EXPECT_EQ(on_air(tomorrow, "0100", 60, "One o'clock"), 0);
    expect_sent({"stored Hour 25"});
}

}  // namespace
}  // namespace event_db

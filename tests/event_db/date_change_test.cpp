// The host's date changes: the first day of every service is retired.
#include "tests/event_db/event_db_fixture.h"

namespace event_db {
namespace {

using DateChange = EventDb;

TEST_F(DateChange, MovesOnToTheNextDay) {
    at("2310");
    listen_to(station);
    on_air("2300", 30, "Late");
    on_air(tomorrow, "1000", 60, "Morning");
    forget_sent();
    at(tomorrow, "1000");
    expect_now_next("Morning", "-");
}

TEST_F(DateChange, FreesTheStartMinutesOfTheRetiredDayOnly) {
    at("1200");
    on_air(today, "1000", 60, "Today");
    on_air(tomorrow, "1000", 60, "Tomorrow");
    at(tomorrow, "1200");
    forget_sent();
    EXPECT_EQ(on_air(tomorrow, "1000", 60, "Repeat"), 0);
    expect_nothing_sent();
    EXPECT_EQ(on_air(today, "1000", 60, "Repeat"), 1);  // yesterday by now
    EXPECT_EQ(on_air(day_after, "1000", 60, "New tomorrow"), 0);
    expect_sent({"stored New tomorrow"});
}

TEST_F(DateChange, RetiresTheFirstDayOfEveryServiceWhateverDayItIs) {
    at("0500");
    on_air(today, "1000", 60, "Today");
    file(programme(tomorrow, "1000", 60, "Only day"), other_station);
    at(tomorrow, "1010");
    // The other service had nothing for the day that has passed, and loses its only, current, day.
    forget_sent();
    EXPECT_EQ(listen_to(other_station), 1);
    expect_nothing_sent();
    EXPECT_EQ(file(programme(tomorrow, "1000", 60, "Once more"), other_station), 0);
    expect_sent({"stored Once more for another service", "now Once more, next -"});
}

TEST_F(DateChange, ANewTimeOfTheSameDateRetiresNothing) {
    at("1200");
    on_air("1000", 60, "Today");
    EXPECT_EQ(db.cfu_date_time(date_time(today, "1201")), 1);
    forget_sent();
    on_air("1000", 60, "Repeat");
    expect_nothing_sent();
}

TEST_F(DateChange, ADateAfterNoneRetiresNothing) {
    at("1200");
    on_air(today, "1000", 60, "Today");
    on_air(tomorrow, "1000", 60, "Tomorrow");
    db.cfu_date_time({0, 3, 2, 12, 0});  // another date, so that today goes; and none: its year is 0
    at("1201");                          // like the first of all
    forget_sent();
    EXPECT_EQ(on_air(today, "1000", 60, "Again"), 0);
    EXPECT_EQ(on_air(tomorrow, "1000", 60, "Repeat"), 0);
    expect_sent({"stored Again"});
}

TEST_F(DateChange, AChangeOfTheMonthAloneRetires) {
    at("20260302", "1200");
    on_air("1000", 60, "Today");
    at("20260402", "1200");
    at("20260302", "1201");
    forget_sent();
    EXPECT_EQ(on_air("1000", 60, "Again"), 0);
    expect_sent({"stored Again"});
}

TEST_F(DateChange, AChangeOfTheYearAloneRetires) {
    at("20260302", "1200");
    on_air("1000", 60, "Today");
    at("20270302", "1200");
    at("20260302", "1201");
    forget_sent();
    EXPECT_EQ(on_air("1000", 60, "Again"), 0);
    expect_sent({"stored Again"});
}

TEST_F(DateChange, RetiringAlwaysGivesOneAndSendsNothing) {
    EXPECT_EQ(db.remove_tt_today(), 1);
    at("1030");
    listen_to(station);
    on_air("1000", 60, "News");
    forget_sent();
    EXPECT_EQ(db.remove_tt_today(), 1);
    EXPECT_EQ(db.remove_tt_today(), 1);  // an emptied service stays, and has nothing left to lose
    expect_nothing_sent();
}

TEST_F(DateChange, AnEmptiedServiceTakesProgrammesAgain) {
    at("1030");
    listen_to(station);
    on_air("1000", 60, "News");
    db.remove_tt_today();
    forget_sent();
    EXPECT_EQ(on_air("1000", 60, "News"), 0);
    expect_sent({"stored News"});
}

TEST_F(DateChange, MakesTheNextDayTheCurrentTimetableWhileNowLasts) {
    at("2350");
    listen_to(station);
    on_air("2340", 40, "Over midnight");
    on_air(tomorrow, "0020", 60, "Small hours");
    on_air(tomorrow, "0120", 60, "Smaller hours");
    forget_sent();
    EXPECT_EQ(at(tomorrow, "0010"), 0);
    EXPECT_EQ(at(tomorrow, "0020"), 0);  // the end minute
    expect_nothing_sent();
    EXPECT_EQ(at(tomorrow, "0021"), 0);
    expect_now_next("Small hours", "Smaller hours");
}

TEST_F(DateChange, TheSameHourAndMinuteOnAnotherDayIsAnotherTime) {
    at("1030");
    listen_to(station);
    on_air("0900", 10, "Earlier");
    on_air(tomorrow, "1030", 60, "Morning");
    forget_sent();
    EXPECT_EQ(at(tomorrow, "1030"), 0);
    expect_now_next("Morning", "-");
}

}  // namespace
}  // namespace event_db

// The choice of the current timetable, and what it outlives.
#include "tests/event_db/event_db_fixture.h"

namespace event_db {
namespace {

using Timetable = EventDb;

TEST_F(Timetable, IsNoneWithoutAServiceOrItsSchedules) {
    EXPECT_EQ(db.find_curtt(false), 1);
    EXPECT_EQ(db.find_curtt(true), 1);
    at("1030");
    listen_to(station);
    EXPECT_EQ(db.find_curtt(false), 1);
    file(programme(today, "1000", 60, "Elsewhere"), other_station);
    EXPECT_EQ(db.find_curtt(false), 1);
}

TEST_F(Timetable, IsTheFirstDayOrTheSecond) {
    at("1030");
    listen_to(station);
    on_air(tomorrow, "1000", 60, "Tomorrow");
    EXPECT_EQ(db.find_curtt(false), 0);
    EXPECT_EQ(db.find_curtt(true), 1);  // one day only
    on_air(today, "1000", 60, "Today");
    EXPECT_EQ(db.find_curtt(false), 0);
    EXPECT_EQ(db.find_curtt(false), 0);  // chosen already
    EXPECT_EQ(db.find_curtt(true), 0);
}

TEST_F(Timetable, IsNoneOnceTheServiceIsEmptied) {
    at("1030");
    listen_to(station);
    on_air("1000", 60, "News");
    db.remove_tt_today();
    EXPECT_EQ(db.find_curtt(false), 1);
}

TEST_F(Timetable, IsNotComparedWithTheHostsDate) {
    at("1030");
    listen_to(station);
    on_air(tomorrow, "1000", 60, "Tomorrow");  // the only day of the service counts as today
    expect_sent({"stored Tomorrow", "now Tomorrow, next -"});
}

TEST_F(Timetable, ARetiredDayStaysWhileItIsTheCurrentOne) {
    at("1030");
    listen_to(station);
    on_air("1000", 60, "News");
    on_air("1200", 60, "Talk");
    forget_sent();
    EXPECT_EQ(at(tomorrow, "1210"), 0);  // no other day came: the search goes on in the one that was removed
    expect_now_next("Talk", "-");
}

TEST_F(Timetable, ANewDayDoesNotReplaceARetiredCurrentOne) {
    at("1030");
    listen_to(station);
    on_air("1000", 60, "News");
    at(tomorrow, "1030");
    forget_sent();
    on_air(tomorrow, "1015", 60, "New day");
    expect_sent({"stored New day"});  // the search still runs in the removed day, in which News is on
    EXPECT_EQ(standing(), "now News, next -");
}

TEST_F(Timetable, ANewServiceReleasesARetiredDay) {
    at("1030");
    listen_to(station);
    on_air("1000", 60, "News");
    at(tomorrow, "1030");
    on_air(tomorrow, "1015", 60, "New day");
    listen_to(other_station);
    forget_sent();
    listen_to(station);
    expect_now_next("New day", "-");
}

TEST_F(Timetable, KeepsTheDayThatItBeganWithWhenAnEarlierOneArrives) {
    at("1030");
    listen_to(station);
    on_air(tomorrow, "1100", 60, "Tomorrow");  // chosen: the only day
    on_air(today, "1000", 60, "Today");        // now the first day, but not the current one
    expect_sent({"stored Tomorrow", "stored Today"});
    EXPECT_EQ(db.find_curtt(false), 0);
    EXPECT_EQ(db.check_send_nownext(), 0);
    expect_now_next("Today", "-");
}

TEST_F(Timetable, FailedSearchesForTomorrowKeepToday) {
    at("2330");
    listen_to(station);
    on_air("2300", 120, "Night");  // looks for tomorrow, in vain
    on_air("2200", 30, "Evening");
    forget_sent();
    at("2210");  // back in time: found in today
    expect_now_next("Evening", "-");
}

}  // namespace
}  // namespace event_db

// What the database does deliberately and a reader might take for a mistake.
#include "tests/event_db/event_db_fixture.h"

namespace event_db {
namespace {

class Quirks : public EventDb {
 protected:
    spi::nownext_update_event last_update() {
        const std::vector<spi::event> events = router.take();
        EXPECT_FALSE(events.empty());
        const auto& update = payload_of<spi::nownext_update_event>(events.back());
        return {update.now, update.next};
    }
};

TEST_F(Quirks, AChangeOfProgrammeIsReportedOneMinuteAfterTheEnd) {
    at("1030");
    on_air("1000", 60, "News");
    on_air("1100", 60, "Talk");
    listen_to(station);
    forget_sent();
    EXPECT_EQ(at("1100"), 0);
    expect_nothing_sent();
    EXPECT_EQ(at("1101"), 0);
    expect_now_next("Talk", "-");
}

TEST_F(Quirks, AGapOfAMinuteMeansThatThereIsNoNext) {
    at("1030");
    on_air("1000", 60, "News");
    on_air("1101", 60, "Talk");
    forget_sent();
    listen_to(station);
    expect_now_next("News", "-");
}

TEST_F(Quirks, AGapOfFiveMinutesMeansThatThereIsNoNext) {
    at("1030");
    on_air("1000", 60, "News");
    on_air("1105", 55, "Talk");
    forget_sent();
    listen_to(station);
    expect_now_next("News", "-");
}

TEST_F(Quirks, TheSwitchToTomorrowsTimetablePersists) {
    at("2330");
    on_air("2300", 60, "Late");
    on_air("2200", 60, "Evening");
    on_air(tomorrow, "0000", 60, "Midnight");
    on_air(tomorrow, "2230", 20, "Tomorrow evening");
    listen_to(station);
    forget_sent();
    at("2240");  // back in time, before midnight: now is looked for in tomorrow's schedule
    expect_now_next("Tomorrow evening", "-");
}

TEST_F(Quirks, TheSwitchToTomorrowsTimetablePersistsWithoutANext) {
    at("2330");
    on_air("2300", 60, "Late");
    on_air("2200", 60, "Evening");
    on_air(tomorrow, "0030", 60, "After a gap");
    listen_to(station);
    forget_sent();
    at("2240");
    expect_nothing_sent();  // tomorrow has nothing on at that time
    EXPECT_EQ(standing(), "now Late, next -");
}

TEST_F(Quirks, TheSameStartMinuteCountsAsTheSameProgrammeWhateverTheTitleAndDay) {
    at("1030");
    listen_to(station);
    on_air(today, "1000", 60, "Monday's");
    on_air(tomorrow, "1000", 60, "Tuesday's");
    forget_sent();
    EXPECT_EQ(at(tomorrow, "1030"), 1);
    expect_nothing_sent();
    EXPECT_EQ(standing(), "now Monday's, next -");
}

TEST_F(Quirks, ANextOfTheSameStartMinuteCountsAsUnchanged) {
    at("1030");
    listen_to(station);
    on_air(today, "1000", 60, "Monday's");
    on_air(today, "1100", 60, "Monday's next");
    on_air(tomorrow, "1000", 60, "Tuesday's");
    on_air(tomorrow, "1100", 60, "Tuesday's next");
    forget_sent();
    EXPECT_EQ(at(tomorrow, "1030"), 1);
    expect_nothing_sent();
    EXPECT_EQ(standing(), "now Monday's, next Monday's next");
}

TEST_F(Quirks, AStartCarriedOverMidnightCountsAsTheSameAsOneThatWasNot) {
    at("0045");
    listen_to(station);
    file(programme(yesterday, "2330", 60, "Monday's", 2));  // 00:30 to 01:30 today
    file(programme(today, "0130", 60, "Monday's next"));
    on_air(tomorrow, "0030", 60, "Tuesday's");
    file(programme(today, "2330", 120, "Tuesday's next", 4));  // 01:30 tomorrow
    forget_sent();
    EXPECT_EQ(at(tomorrow, "0045"), 1);
    expect_nothing_sent();
    EXPECT_EQ(standing(), "now Monday's, next Monday's next");
}

TEST_F(Quirks, AnEmptyNextKeepsTheDurationOfTheOneBefore) {
    at("1030");
    on_air("1000", 60, "News");
    on_air("1100", 45, "Talk");
    listen_to(station);
    at("1101");
    const spi::nownext_update_event update = last_update();
    EXPECT_EQ(update.now.name, "Talk");
    EXPECT_EQ(update.next.name, "");
    EXPECT_EQ(update.next.time.mjd, 0U);
    EXPECT_EQ(update.next.duration, 45 * 60);
}

TEST_F(Quirks, AnUntitledProgrammeSendsAnUpdateAtEveryChangedMinute) {
    at("1030");
    on_air("1000", 60, "");
    forget_sent();
    listen_to(station);
    expect_now_next("-", "-");
    at("1031");
    expect_now_next("-", "-");
    at("1032");
    expect_now_next("-", "-");
    at("1032");
    expect_nothing_sent();
}

TEST_F(Quirks, AnUntitledProgrammeSendsAnUpdateAtEveryNewProgrammeOfTheService) {
    at("1030");
    listen_to(station);
    on_air("1000", 60, "");
    forget_sent();
    on_air("1400", 60, "Tea");
    expect_sent({"stored Tea", "now -, next -"});
    on_air("1500", 60, "Drive");
    expect_sent({"stored Drive", "now -, next -"});
}

TEST_F(Quirks, AnUntitledNowHasNoNext) {
    at("1030");
    on_air("1000", 60, "");
    on_air("1100", 60, "Talk");
    forget_sent();
    listen_to(station);
    expect_now_next("-", "-");
}

TEST_F(Quirks, AnUntitledNextIsFoundAgainAtEveryNewProgramme) {
    at("1030");
    listen_to(station);
    on_air("1000", 60, "News");
    on_air("1100", 60, "");
    forget_sent();
    on_air("1400", 60, "Tea");
    expect_sent({"stored Tea", "now News, next -"});
}

TEST_F(Quirks, ADateJumpRetiresExactlyOneDay) {
    at(today, "1200");
    on_air(today, "1000", 60, "Today");
    on_air(tomorrow, "1000", 60, "Tomorrow");
    at("20260320", "1200");
    at(tomorrow, "1030");  // a second change: the second day goes
    listen_to(station);
    expect_sent({"stored Today", "stored Tomorrow"});

    at(today, "0900");
    on_air(today, "1000", 60, "Today");
    on_air(tomorrow, "1000", 60, "Tomorrow");
    at("20260320", "1030");  // eighteen days on, and one day was retired: what was tomorrow is "today"
    forget_sent();
    listen_to(other_station);
    listen_to(station);
    expect_now_next("Tomorrow", "-");
}

TEST_F(Quirks, ADateThatGoesBackRetiresADayToo) {
    at(today, "1030");
    on_air(today, "1000", 60, "Today");
    on_air(tomorrow, "1000", 60, "Tomorrow");
    at(yesterday, "1030");
    forget_sent();
    listen_to(station);
    expect_now_next("Tomorrow", "-");
}

TEST_F(Quirks, AWrappedKeyIsUnreachable) {
    at(today, "2320");
    // 23:10 today by the listener's clock, filed behind every minute of the day: neither now ...
    file(programme(tomorrow, "0010", 60, "Wrapped", -2));
    forget_sent();
    EXPECT_EQ(listen_to(station), 1);
    expect_nothing_sent();
    // ... nor next.
    on_air("2210", 60, "Before it");
    at("2230");
    EXPECT_EQ(standing(), "now Before it, next -");
}

TEST_F(Quirks, TheFirstProgrammeForAStartMinuteWinsOverALaterCorrection) {
    at("1030");
    listen_to(station);
    on_air("1000", 60, "News");
    on_air("1000", 90, "Extended news");
    expect_sent({"stored News", "now News, next -"});
}

TEST_F(Quirks, NowIsKeptWhenNothingCoversTheTime) {
    at("1030");
    on_air("1000", 60, "News");
    on_air("1100", 30, "Talk");
    listen_to(station);
    at("1101");
    forget_sent();
    EXPECT_EQ(at("1500"), 1);
    expect_nothing_sent();
    EXPECT_EQ(standing(), "now Talk, next -");
}

TEST_F(Quirks, ANextMayStillArriveForANowThatIsOver) {
    at("1030");
    on_air("1000", 60, "News");
    listen_to(station);
    at("1500");
    forget_sent();
    on_air("1100", 60, "Talk");
    expect_sent({"stored Talk", "now News, next Talk"});
}

}  // namespace
}  // namespace event_db

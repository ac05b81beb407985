// Which programmes are filed, and what is sent for them.
#include "tests/event_db/event_db_fixture.h"

namespace event_db {
namespace {

using Filing = EventDb;

TEST_F(Filing, RefusesEverythingBeforeTheFirstDate) {
    EXPECT_EQ(on_air("1000", 60, "News"), 1);
    expect_nothing_sent();
}

TEST_F(Filing, DoesNotKeepWhatCameBeforeTheFirstDate) {
    on_air("1000", 60, "News");
    at("1030");
    listen_to(station);
    expect_nothing_sent();
    EXPECT_EQ(on_air("1000", 60, "News"), 0);  // its start minute was never taken
    expect_sent({"stored News", "now News, next -"});
}

TEST_F(Filing, RefusesAProgrammeWithoutAStartDay) {
    at("1030");
    spi::PiScheduleProgramme p = programme(today, "1000", 60, "News");
    p.time.mjd = 0;
    EXPECT_EQ(file(p), 1);
    // Not even on the date that day zero reads as, nor on the one before it.
    db.cfu_date_time({1859, 255, 19, 10, 30});
    EXPECT_EQ(file(p), 1);
    p.time.lto = 60;  // would carry it out of day zero
    EXPECT_EQ(file(p), 1);
    expect_nothing_sent();
}

TEST_F(Filing, ReportsAFiledProgrammeWithItsServiceAndAllFields) {
    at("0900");
    spi::PiScheduleProgramme p = programme(today, "1000", 60, "News", 2);
    p.eid = 0xC181;
    p.crid = 0x123456;
    p.bearer = {0xC224, 0xE2, 3};
    p.time.second = 17;
    p.duration = 3601;
    const spi::ServElemId service{0xE1234567, 0xE1, 5};
    EXPECT_EQ(file(p, service), 0);

    const std::vector<spi::event> events = router.take();
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0].destination, spi::QID_CBHDL);
    ASSERT_EQ(events[0].code(), spi::EC_EVTINFO);
    const auto& stored = payload_of<spi::pi_programme_event>(events[0]);
    EXPECT_EQ(stored.service.sid, 0xE1234567U);
    EXPECT_EQ(stored.service.ecc, 0xE1);
    EXPECT_EQ(stored.service.scids, 5);
    EXPECT_EQ(stored.programme.eid, 0xC181);
    EXPECT_EQ(stored.programme.crid, 0x123456U);
    EXPECT_EQ(stored.programme.bearer, (spi::ServElemId{0xC224, 0xE2, 3}));
    EXPECT_EQ(stored.programme.name, "News");
    EXPECT_EQ(stored.programme.time.mjd, p.time.mjd);
    EXPECT_EQ(stored.programme.time.hour, 10);
    EXPECT_EQ(stored.programme.time.minute, 0);
    EXPECT_EQ(stored.programme.time.second, 17);
    EXPECT_EQ(stored.programme.time.lto, 2);
    EXPECT_EQ(stored.programme.duration, 3601);
}

TEST_F(Filing, TheEventCarriesACopyThatTheStoreDoesNotShare) {
    at("0900");
    on_air("1000", 60, "News");
    const std::vector<spi::event> events = router.take();
    db.clear_db();
    EXPECT_EQ(payload_of<spi::pi_programme_event>(events.at(0)).programme.name, "News");
}

TEST_F(Filing, FilesProgrammesOfServicesThatNobodyListensTo) {
    at("1030");
    listen_to(station);
    EXPECT_EQ(file(programme(today, "1000", 60, "Elsewhere"), other_station), 0);
    expect_sent({"stored Elsewhere for another service"});
    listen_to(other_station);
    expect_now_next("Elsewhere", "-");
}

TEST_F(Filing, FilesForAServiceWhoseIdentifierIsAllZero) {
    at("1030");
    EXPECT_EQ(file(programme(today, "1000", 60, "Nameless"), {}), 0);
    expect_sent({"stored Nameless for another service"});
}

TEST_F(Filing, ServicesThatDifferOnlyInTheirEccOrScidsAreDifferentServices) {
    at("1030");
    listen_to(station);
    file(programme(today, "1000", 60, "Other country"), {station.sid, 0xE2, 0});
    file(programme(today, "1000", 60, "Other component"), {station.sid, station.ecc, 1});
    forget_sent();
    on_air("1000", 60, "News");
    expect_sent({"stored News", "now News, next -"});
}

TEST_F(Filing, TheFirstProgrammeForAStartMinuteWins) {
    at("1030");
    EXPECT_EQ(on_air("1000", 60, "First"), 0);
    EXPECT_EQ(on_air("1000", 30, "Second"), 0);  // no refusal, but nothing happens
    expect_sent({"stored First"});
    listen_to(station);
    expect_now_next("First", "-");
}

TEST_F(Filing, ARepeatedProgrammeIsNotReportedAgain) {
    at("0900");
    on_air("1000", 60, "News");
    forget_sent();
    EXPECT_EQ(on_air("1000", 60, "News"), 0);
    expect_nothing_sent();
}

TEST_F(Filing, ARepeatDoesNotStartASearch) {
    at("0900");
    listen_to(station);
    on_air("1000", 60, "");  // untitled: a search would send an update every time once it is on air
    db.cfu_date_time(date_time(today, "1030"));
    forget_sent();
    on_air("1000", 60, "");
    expect_nothing_sent();
}

TEST_F(Filing, TheSecondsOfTheStartDoNotMakeAnotherStartMinute) {
    at("0900");
    on_air("1000", 60, "First");
    forget_sent();
    spi::PiScheduleProgramme p = programme(today, "1000", 60, "Second");
    p.time.second = 30;
    EXPECT_EQ(file(p), 0);
    expect_nothing_sent();
}

TEST_F(Filing, TheSameStartMinuteOnBothDaysIsTwoProgrammes) {
    at("0900");
    on_air(today, "1000", 60, "Today");
    on_air(tomorrow, "1000", 60, "Tomorrow");
    expect_sent({"stored Today", "stored Tomorrow"});
}

}  // namespace
}  // namespace event_db

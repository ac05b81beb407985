// Clearing the database, and asking for now and next again.
#include "tests/event_db/event_db_fixture.h"

namespace event_db {
namespace {

class Clearing : public EventDb {
 protected:
    void fill() {
        at("1030");
        listen_to(station);
        on_air("1000", 60, "News");
        on_air("1100", 60, "Talk");
        file(programme(today, "1000", 60, "Elsewhere"), other_station);
        forget_sent();
    }
    spi::nownext_update_event resent() {
        router.take();
        handle(std::make_shared<spi::resend_nownext_event>());
        const std::vector<spi::event> events = router.take();
        EXPECT_EQ(events.size(), 1U);
        EXPECT_EQ(events.at(0).destination, spi::QID_CBHDL);
        const auto& update = payload_of<spi::nownext_update_event>(events.at(0));
        return {update.now, update.next};
    }
};

void expect_never_set(const spi::SpiTimePoint& t) {
    EXPECT_EQ(t.mjd, 0U);
    EXPECT_EQ(t.hour, 0);
    EXPECT_EQ(t.minute, 0);
    EXPECT_EQ(t.second, 0);
    EXPECT_EQ(t.lto, 0);
}

TEST_F(Clearing, SendsNothing) {
    fill();
    EXPECT_EQ(db.clear_db(), 0);
    expect_nothing_sent();
}

TEST_F(Clearing, EmptiesNowAndNext) {
    fill();
    db.clear_db();
    EXPECT_EQ(standing(), "now -, next -");
}

TEST_F(Clearing, ForgetsTheSchedulesOfEveryService) {
    fill();
    db.clear_db();
    at("1031");
    listen_to(other_station);
    listen_to(station);
    expect_nothing_sent();
    on_air("1000", 60, "News again");  // its start minute is free
    expect_sent({"stored News again", "now News again, next -"});
}

TEST_F(Clearing, KeepsTheServiceAndTheDate) {
    fill();
    db.clear_db();
    on_air("1000", 60, "News");  // filed: the date is known; searched for: the service is
    expect_sent({"stored News", "now News, next -"});
    EXPECT_EQ(at("1030"), 0);
    EXPECT_EQ(listen_to(station), 1);
    expect_nothing_sent();
}

TEST_F(Clearing, ReleasesTheCurrentTimetable) {
    fill();
    db.clear_db();
    EXPECT_EQ(at("1105"), 1);  // Talk is gone from under the tracker too
    expect_nothing_sent();
}

TEST_F(Clearing, EmptiesTitleAndTimeAndLeavesTheRest) {
    at("1030");
    listen_to(station);
    spi::PiScheduleProgramme news = programme(today, "0900", 60, "News", 2);
    news.eid = 0xC181;
    news.crid = 77;
    news.bearer = {0xC224, 0xE2, 3};
    news.time.second = 9;
    file(news);
    file(programme(today, "1000", 45, "Talk", 2));
    db.clear_db();
    const spi::nownext_update_event left = resent();
    EXPECT_EQ(left.now.name, "");
    expect_never_set(left.now.time);
    EXPECT_EQ(left.now.duration, 3600);
    EXPECT_EQ(left.now.crid, 77U);
    EXPECT_EQ(left.now.eid, 0xC181);
    EXPECT_EQ(left.now.bearer, (spi::ServElemId{0xC224, 0xE2, 3}));
    EXPECT_EQ(left.next.name, "");
    expect_never_set(left.next.time);
    EXPECT_EQ(left.next.duration, 45 * 60);
}

TEST_F(Clearing, IsHarmlessOnAnEmptyDatabase) {
    EXPECT_EQ(db.clear_db(), 0);
    expect_nothing_sent();
}

TEST_F(Clearing, DumpingChangesAndSendsNothing) {
    fill();
    db.dump_db();
    expect_nothing_sent();
    EXPECT_EQ(standing(), "now News, next Talk");
    at("1105");
    expect_now_next("Talk", "-");
}

using Resending = Clearing;

TEST_F(Resending, WithNothingKnownSendsTwoEmptyProgrammes) {
    const spi::nownext_update_event nothing = resent();
    for (const spi::PiScheduleProgramme* p : {&nothing.now, &nothing.next}) {
        EXPECT_EQ(p->name, "");
        expect_never_set(p->time);
        EXPECT_EQ(p->duration, 0);
        EXPECT_EQ(p->crid, 0U);
        EXPECT_EQ(p->eid, 0);
        EXPECT_EQ(p->bearer, spi::ServElemId{});
    }
}

TEST_F(Resending, SendsNowAndNextAsTheyStandEveryTime) {
    fill();
    EXPECT_EQ(standing(), "now News, next Talk");
    EXPECT_EQ(standing(), "now News, next Talk");
}

TEST_F(Resending, SearchesForNothing) {
    at("1030");
    on_air("1000", 60, "News");
    listen_to(station);
    on_air("1100", 60, "Talk");
    at("1100");  // the end minute: News lasts, though a search would find Talk
    EXPECT_EQ(standing(), "now News, next Talk");
}

}  // namespace
}  // namespace event_db

// When an update is sent: as the time goes on, and as programmes arrive.
#include "tests/event_db/event_db_fixture.h"

namespace event_db {
namespace {

class Announcing : public EventDb {
 protected:
    void news_and_talk() {
        at("1030");
        listen_to(station);
        on_air("1000", 60, "News");
        on_air("1100", 60, "Talk");
    }
};

TEST_F(Announcing, ReportsNowAndNextInOneUpdate) {
    at("1030");
    on_air("1000", 60, "News");
    on_air("1100", 60, "Talk");
    forget_sent();
    EXPECT_EQ(listen_to(station), 0);
    expect_now_next("News", "Talk");
}

TEST_F(Announcing, ReportsNowAsItArrivesAndNextAsItArrives) {
    news_and_talk();
    expect_sent({"stored News", "now News, next -", "stored Talk", "now News, next Talk"});
}

TEST_F(Announcing, ReportsNothingUntilNowIsKnown) {
    at("1030");
    listen_to(station);
    on_air("1100", 60, "Talk");
    expect_sent({"stored Talk"});
    on_air("1000", 60, "News");
    expect_sent({"stored News", "now News, next Talk"});
}

TEST_F(Announcing, ReportsNothingWhileNowLasts) {
    news_and_talk();
    forget_sent();
    EXPECT_EQ(at("1031"), 0);
    EXPECT_EQ(at("1059"), 0);
    EXPECT_EQ(at("1005"), 0);  // back in time, within the programme
    expect_nothing_sent();
}

TEST_F(Announcing, TheSameTimeAgainDoesNothing) {
    news_and_talk();
    forget_sent();
    EXPECT_EQ(at("1030"), 0);
    expect_nothing_sent();
}

TEST_F(Announcing, TheSameTimeAgainDoesNotEvenSearch) {
    at("1030");
    on_air("1000", 60, "");
    listen_to(station);
    forget_sent();
    EXPECT_EQ(at("1030"), 0);  // a search would send an untitled programme once more
    expect_nothing_sent();
}

TEST_F(Announcing, FindsTheNextButOneWhenNowMovesOn) {
    news_and_talk();
    on_air("1200", 60, "Music");
    forget_sent();
    EXPECT_EQ(at("1101"), 0);
    expect_now_next("Talk", "Music");
}

TEST_F(Announcing, AProgrammeArrivingWhileBothAreKnownIsReportedOnly) {
    news_and_talk();
    forget_sent();
    EXPECT_EQ(on_air("1015", 60, "Late arrival"), 0);
    EXPECT_EQ(on_air("0955", 60, "Would be now"), 0);
    expect_sent({"stored Late arrival", "stored Would be now"});
    EXPECT_EQ(standing(), "now News, next Talk");
}

TEST_F(Announcing, AProgrammeArrivingWhileNextIsMissingMayReplaceNow) {
    at("1030");
    listen_to(station);
    on_air("1000", 60, "News");
    forget_sent();
    on_air("0955", 60, "Earlier start");
    expect_sent({"stored Earlier start", "now Earlier start, next -"});
}

TEST_F(Announcing, AProgrammeOfAnotherServiceStartsNoSearch) {
    at("1030");
    on_air("1000", 60, "");
    listen_to(station);
    forget_sent();
    EXPECT_EQ(db.check_match(other_station), 0);
    expect_nothing_sent();
    EXPECT_EQ(db.check_match(station), 0);  // this one does
    expect_now_next("-", "-");
}

TEST_F(Announcing, WithoutACurrentServiceNothingIsSearchedFor) {
    at("1030");
    file(programme(today, "1000", 60, "News"), {});
    expect_sent({"stored News for another service"});
    EXPECT_EQ(db.check_match({}), 1);
}

TEST_F(Announcing, AServiceWithoutAnEccIsNotSearchedForAsItsProgrammesArrive) {
    const spi::ServElemId without_ecc{0xC221, 0, 0};
    at("1030");
    listen_to(without_ecc);
    file(programme(today, "1000", 60, "News"), without_ecc);
    expect_sent({"stored News for another service"});
    EXPECT_EQ(db.check_match(without_ecc), 1);
    at("1031");  // but the time finds it
    expect_now_next("News", "-");
}

TEST_F(Announcing, AServiceWithoutASidIsNotSearchedForAsItsProgrammesArrive) {
    const spi::ServElemId without_sid{0, 0xE1, 1};
    at("1030");
    listen_to(without_sid);
    file(programme(today, "1000", 60, "News"), without_sid);
    expect_sent({"stored News for another service"});
    EXPECT_EQ(db.check_match(without_sid), 1);
}

TEST_F(Announcing, ResultsTellWhetherAnUpdateWasSent) {
    EXPECT_EQ(db.check_send_nownext(), 1);  // no service
    at("1030");
    listen_to(station);
    EXPECT_EQ(db.check_send_nownext(), 1);  // no schedule
    file(programme(today, "1000", 60, "News"), other_station);
    EXPECT_EQ(listen_to(other_station), 0);
    EXPECT_EQ(db.check_send_nownext(), 1);  // nothing changed
}

TEST_F(Announcing, UpdatesCarryEveryField) {
    at("1030");
    spi::PiScheduleProgramme news = programme(today, "0800", 60, "News", 4);
    news.eid = 0xC181;
    news.crid = 1;
    news.bearer = {0xC224, 0xE2, 3};
    news.time.second = 7;
    file(news);
    spi::PiScheduleProgramme talk = programme(today, "0900", 30, "Talk", 4);
    talk.crid = 2;
    file(talk);
    router.take();
    listen_to(station);
    const std::vector<spi::event> events = router.take();
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0].destination, spi::QID_CBHDL);
    const auto& update = payload_of<spi::nownext_update_event>(events[0]);
    EXPECT_EQ(update.now.eid, 0xC181);
    EXPECT_EQ(update.now.crid, 1U);
    EXPECT_EQ(update.now.bearer, (spi::ServElemId{0xC224, 0xE2, 3}));
    EXPECT_EQ(update.now.time.mjd, news.time.mjd);
    EXPECT_EQ(update.now.time.hour, 8);
    EXPECT_EQ(update.now.time.second, 7);
    EXPECT_EQ(update.now.time.lto, 4);
    EXPECT_EQ(update.now.duration, 3600);
    EXPECT_EQ(update.next.crid, 2U);
    EXPECT_EQ(update.next.duration, 1800);
}

}  // namespace
}  // namespace event_db

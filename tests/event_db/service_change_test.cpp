// The host tunes to another service.
#include "tests/event_db/event_db_fixture.h"

namespace event_db {
namespace {

class ServiceChange : public EventDb {
 protected:
    ServiceChange() {
        at("1030");
        on_air("1000", 60, "News");
        on_air("1100", 60, "Talk");
        file(programme(today, "1000", 60, "Rock"), other_station);
        forget_sent();
    }
};

TEST_F(ServiceChange, ReportsTheNewServicesNowAndNext) {
    EXPECT_EQ(listen_to(station), 0);
    expect_now_next("News", "Talk");
    EXPECT_EQ(listen_to(other_station), 0);
    expect_now_next("Rock", "-");
}

TEST_F(ServiceChange, TheSameServiceAgainSendsNothing) {
    listen_to(station);
    forget_sent();
    EXPECT_EQ(listen_to(station), 1);
    expect_nothing_sent();
    EXPECT_EQ(standing(), "now News, next Talk");
}

TEST_F(ServiceChange, ToOneWithoutSchedulesClearsNowAndNextSilently) {
    listen_to(station);
    forget_sent();
    EXPECT_EQ(listen_to({0xC223, 0xE1, 0}), 1);
    expect_nothing_sent();
    EXPECT_EQ(standing(), "now -, next -");
}

TEST_F(ServiceChange, ToOneWithNothingOnSendsNothing) {
    file(programme(today, "1800", 60, "Evening"), {0xC223, 0xE1, 0});
    listen_to(station);
    forget_sent();
    EXPECT_EQ(listen_to({0xC223, 0xE1, 0}), 1);
    expect_nothing_sent();
    EXPECT_EQ(standing(), "now -, next -");
}

TEST_F(ServiceChange, ThereAndBackReportsTheSameAgain) {
    listen_to(station);
    listen_to(other_station);
    forget_sent();
    listen_to(station);
    expect_now_next("News", "Talk");
}

TEST_F(ServiceChange, ReplacesAProgrammeOfTheSameStartMinute) {
    listen_to(other_station);
    forget_sent();
    listen_to(station);  // Rock starts in the same minute as News; it was cleared before the search
    expect_now_next("News", "Talk");
}

TEST_F(ServiceChange, ADifferenceInTheEccOrScidsAloneIsAChange) {
    listen_to(station);
    EXPECT_EQ(standing(), "now News, next Talk");
    EXPECT_EQ(listen_to({station.sid, station.ecc, 1}), 1);
    EXPECT_EQ(standing(), "now -, next -");
    listen_to(station);
    EXPECT_EQ(listen_to({station.sid, 0xE2, 0}), 1);
    EXPECT_EQ(standing(), "now -, next -");
}

TEST_F(ServiceChange, ToNoServiceClearsNowAndNext) {
    listen_to(station);
    EXPECT_EQ(listen_to({}), 1);
    EXPECT_EQ(standing(), "now -, next -");
    on_air("1200", 60, "Music");
    expect_sent({"stored Music"});
}

TEST_F(ServiceChange, AServiceWithoutAnEccIsSearchedForAtOnce) {
    const spi::ServElemId without_ecc{0xC221, 0, 0};
    file(programme(today, "1000", 60, "Plain"), without_ecc);
    forget_sent();
    EXPECT_EQ(listen_to(without_ecc), 0);
    expect_now_next("Plain", "-");
}

TEST_F(ServiceChange, BeforeAnyDateSendsNothing) {
    recording_router own_router;
    spi::SpiEventDb fresh;
    own_router.register_queue(&fresh);
    EXPECT_EQ(fresh.cfu_service(station), 1);
    EXPECT_TRUE(own_router.take().empty());
}

}  // namespace
}  // namespace event_db

// Which event does what: each code once, through the handler that the worker's thread calls.
#include "tests/event_db/event_db_fixture.h"

namespace event_db {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

using Dispatch = EventDb;

struct coded_event : spi::i_evt_base {
    explicit coded_event(int value) : i_evt_base(static_cast<spi::event_code>(value)) {}
};

TEST_F(Dispatch, DateTimeSetsTheTime) {
    handle(std::make_shared<spi::date_time_event>(date_time(today, "1030")));
    EXPECT_EQ(on_air("1000", 60, "News"), 0);
}

TEST_F(Dispatch, ServiceSetsTheService) {
    at("1030");
    on_air("1000", 60, "News");
    forget_sent();
    handle(std::make_shared<spi::set_service_event>(station));
    expect_now_next("News", "-");
}

TEST_F(Dispatch, ProgrammeIsFiledForItsService) {
    at("1030");
    handle(std::make_shared<spi::pi_programme_event>(station, programme(today, "1000", 60, "News")));
    expect_sent({"stored News"});
}

TEST_F(Dispatch, ResendSendsNowAndNext) {
    handle(std::make_shared<spi::resend_nownext_event>());
    EXPECT_THAT(router.take_codes(), ElementsAre(Pair(spi::QID_CBHDL, spi::EC_NOWNEXT)));
}

TEST_F(Dispatch, ClearClears) {
    at("1030");
    listen_to(station);
    on_air("1000", 60, "News");
    forget_sent();
    handle(std::make_shared<spi::db_clear_event>());
    expect_nothing_sent();
    EXPECT_EQ(standing(), "now -, next -");
}

TEST_F(Dispatch, TermIsAnsweredToTheServerOnce) {
    handle(std::make_shared<spi::term_event>());
    EXPECT_THAT(router.take_codes(), ElementsAre(Pair(spi::QID_SERV, spi::EC_TERM)));
}

TEST_F(Dispatch, EveryOtherCodeIsIgnored) {
    at("1030");
    listen_to(station);
    on_air("1000", 60, "News");
    forget_sent();
    for (int code = 0; code < 256; ++code) {
        switch (code) {
            case spi::EC_DATETIME:
            case spi::EC_SERV:
            case spi::EC_EVTINFO:
            case spi::EC_RESEND:
            case spi::EC_DBCLEAR:
            case spi::EC_TERM: continue;
            default: handle(std::make_shared<coded_event>(code)); break;
        }
        EXPECT_THAT(router.take_codes(), IsEmpty()) << "code " << code;
    }
    EXPECT_EQ(standing(), "now News, next -");
}

TEST_F(Dispatch, AnEventWithoutAPayloadIsIgnored) {
    handle(nullptr);
    expect_nothing_sent();
}

TEST_F(Dispatch, TheWorkerServesTheDatabasesQueue) {
    EXPECT_EQ(db.queue_id(), spi::QID_EVTDB);
}

}  // namespace
}  // namespace event_db

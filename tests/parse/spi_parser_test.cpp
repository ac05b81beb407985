// The parser worker: which objects it parses, what it keeps, what it answers.
#include "src/parse/worker/spi_parser.h"

#include "tests/parse/parse_fixture.h"
#include "tests/support/captured_stderr.h"

namespace {

using namespace spi_builder;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

const spi::ServElemId kOneService = service_of(0xE1, 0xD001);

class SpiParser : public parse_fixture {
 protected:
    // One programme, with a bearer on ensemble `eid`.
    static bytes schedule_on(std::uint16_t eid, const std::string& name = "News") {
        programme_data data;
        data.name.medium_name = name;
        data.start = {spi_builder::mjd(2017, 1, 1), 22, 0};
        data.bearers = {service_id{0xE1, eid, 0xC221}};
        schedule_data all;
        all.programmes = {data};
        return pi_object({all});
    }
    static bytes service_named(const std::string& name) {
        service_data data;
        data.name.medium_name = name;
        return si_object(0xE1, kEnsemble, {data});
    }

    // True when the object is parsed, false when it is taken as known.
    bool parses(const std::string& name, const bytes& object, const spi::ServElemId& service = kOneService) {
        feed(kServiceInformation, name, object, service);
        return !take_services().empty();
    }
};

TEST_F(SpiParser, ServesTheParsersQueue) {
    EXPECT_EQ(parser.queue_id(), spi::QID_PARSE);
}

TEST_F(SpiParser, SubTypeTellsServiceInformationFromProgrammeInformation) {
    set_ensemble(kEnsemble);
    feed(kServiceInformation, "si", service_named("R4"));
    EXPECT_THAT(router.take_codes(), ElementsAre(Pair(spi::QID_LOGODB, spi::EC_SERVINFO)));
    feed(kProgrammeInformation, "pi", schedule_on(kEnsemble));
    EXPECT_THAT(router.take_codes(), ElementsAre(Pair(spi::QID_EVTDB, spi::EC_EVTINFO)));
}

TEST_F(SpiParser, ContentDoesNotTellThemApart) {
    set_ensemble(kEnsemble);
    feed(kProgrammeInformation, "si", service_named("R4"));
    feed(kServiceInformation, "pi", schedule_on(kEnsemble));
    EXPECT_THAT(router.take_codes(), IsEmpty());
}

TEST_F(SpiParser, ServiceInformationIsSentWithTheServiceItCameWith) {
    feed(kServiceInformation, "si", service_named("R4"), service_of(0xE2, 0x12345678, 7));
    const auto sent = take_services();
    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(sent[0].received_with, service_of(0xE2, 0x12345678, 7));
}

TEST_F(SpiParser, SameObjectIsParsedOnce) {
    EXPECT_TRUE(parses("a", service_named("R4")));
    EXPECT_FALSE(parses("a", service_named("R4")));
    EXPECT_FALSE(parses("a", service_named("R4")));
}

TEST_F(SpiParser, ObjectOfAnotherSizeIsParsedAgain) {
    EXPECT_TRUE(parses("a", service_named("R4")));
    EXPECT_TRUE(parses("a", service_named("R45")));
    EXPECT_FALSE(parses("a", service_named("R45")));
    EXPECT_TRUE(parses("a", service_named("R4")));
}

TEST_F(SpiParser, ObjectThatChangesWithoutChangingItsSizeIsTakenAsKnown) {
    EXPECT_TRUE(parses("a", service_named("R4")));
    EXPECT_FALSE(parses("a", service_named("R5")));
}

TEST_F(SpiParser, ObjectOfAnotherNameOrServiceIsParsed) {
    EXPECT_TRUE(parses("a", service_named("R4")));
    EXPECT_TRUE(parses("b", service_named("R4")));
    EXPECT_TRUE(parses("a", service_named("R4"), service_of(0xE2, 0xD001)));
    EXPECT_TRUE(parses("a", service_named("R4"), service_of(0xE1, 0xD002)));
    EXPECT_TRUE(parses("a", service_named("R4"), service_of(0xE1, 0xD001, 1)));
    EXPECT_FALSE(parses("a", service_named("R4")));
}

TEST_F(SpiParser, OtherSubTypesAreRememberedButNotParsed) {
    for (const std::uint16_t subtype : std::initializer_list<std::uint16_t>{2, 3, 255, 256, 257, 65535}) {
        const std::string name = "of sub-type " + std::to_string(subtype);
        feed(subtype, name, service_named("R4"));
        EXPECT_THAT(router.take_codes(), IsEmpty());
        EXPECT_FALSE(parses(name, service_named("R4")));
        EXPECT_TRUE(parses(name, service_named("R45")));
    }
}

TEST_F(SpiParser, SubTypesShareTheirNames) {
    set_ensemble(kEnsemble);
    const bytes object = schedule_on(kEnsemble);
    feed(kServiceInformation, "a", object);
    feed(kProgrammeInformation, "a", object);
    EXPECT_THAT(router.take_codes(), IsEmpty());
}

TEST_F(SpiParser, NewDayParsesEveryObjectAgain) {
    set_clock(date_time_of(2026, 3, 2, 10, 30));
    EXPECT_TRUE(parses("a", service_named("R4")));
    EXPECT_TRUE(parses("b", service_named("R4")));
    set_clock(date_time_of(2026, 3, 3, 0, 0));
    EXPECT_TRUE(parses("a", service_named("R4")));
    EXPECT_TRUE(parses("b", service_named("R4")));
    EXPECT_FALSE(parses("a", service_named("R4")));
}

TEST_F(SpiParser, VeryFirstDateForgetsNothing) {
    EXPECT_TRUE(parses("a", service_named("R4")));
    set_clock(date_time_of(2026, 3, 2));
    EXPECT_FALSE(parses("a", service_named("R4")));
}

TEST_F(SpiParser, SameDayForgetsNothing) {
    set_clock(date_time_of(2026, 3, 2, 10, 30));
    parses("a", service_named("R4"));
    set_clock(date_time_of(2026, 3, 2, 23, 59));
    EXPECT_FALSE(parses("a", service_named("R4")));
}

TEST_F(SpiParser, OnlyTheDayFieldTellsANewDay) {
    set_clock(date_time_of(2026, 3, 2));
    parses("a", service_named("R4"));
    set_clock(date_time_of(2026, 4, 2));
    EXPECT_FALSE(parses("a", service_named("R4")));
    set_clock(date_time_of(2027, 4, 2));
    EXPECT_FALSE(parses("a", service_named("R4")));
    set_clock(date_time_of(2027, 4, 1));
    EXPECT_TRUE(parses("a", service_named("R4")));
}

TEST_F(SpiParser, DateOfTheSameDayFieldIsNotTakenOver) {
    // A first date of day 0 equals the zero that is there: its year is not kept, so the next date is the
    // first.
    set_clock(date_time_of(2026, 3, 0));
    parses("a", service_named("R4"));
    set_clock(date_time_of(2026, 3, 2));
    EXPECT_FALSE(parses("a", service_named("R4")));
    set_clock(date_time_of(2026, 3, 3));
    EXPECT_TRUE(parses("a", service_named("R4")));
}

TEST_F(SpiParser, DateOfYearZeroCountsAsNone) {
    set_clock(date_time_of(0, 3, 2));
    parses("a", service_named("R4"));
    set_clock(date_time_of(2026, 3, 3));
    EXPECT_FALSE(parses("a", service_named("R4")));
}

TEST_F(SpiParser, HandlingADateReturnsZero) {
    EXPECT_EQ(parser.handle_date_time(date_time_of(2026, 3, 2)), 0);
    EXPECT_EQ(parser.handle_date_time(date_time_of(2026, 3, 2)), 0);
    EXPECT_EQ(parser.handle_date_time(date_time_of(2026, 3, 3)), 0);
}

TEST_F(SpiParser, ClearingParsesEveryObjectAgain) {
    EXPECT_TRUE(parses("a", service_named("R4")));
    clear();
    EXPECT_TRUE(parses("a", service_named("R4")));
}

TEST_F(SpiParser, ClearingKeepsTheEnsembleAndTheDate) {
    set_ensemble(kEnsemble);
    set_clock(date_time_of(2026, 3, 2));
    clear();
    feed_pi(schedule_on(kEnsemble));
    EXPECT_EQ(take_programmes().size(), 1U);
    parses("a", service_named("R4"));
    set_clock(date_time_of(2026, 3, 3));  // were it the first date, nothing would be forgotten
    EXPECT_TRUE(parses("a", service_named("R4")));
}

TEST_F(SpiParser, BeforeAnyEnsembleOnlyIdentifiersOfEnsembleZeroAreAccepted) {
    EXPECT_THAT(names_in_pi(schedule_on(kEnsemble)), IsEmpty());
    EXPECT_THAT(names_in_pi(schedule_on(0)), ElementsAre("News"));
    feed_pi(schedule_on(0));
    EXPECT_EQ(take_programmes().at(0).programme.eid, 0);
}

TEST_F(SpiParser, EnsembleHoldsFromItsEventOn) {
    set_ensemble(kEnsemble);
    EXPECT_THAT(names_in_pi(schedule_on(kEnsemble)), ElementsAre("News"));
    EXPECT_THAT(names_in_pi(schedule_on(0)), IsEmpty());
    set_ensemble(0xC186);
    EXPECT_THAT(names_in_pi(schedule_on(kEnsemble)), IsEmpty());
    feed_pi(schedule_on(0xC186));
    EXPECT_EQ(take_programmes().at(0).programme.eid, 0xC186);
}

TEST_F(SpiParser, EnsembleAppliesToScopesToo) {
    set_ensemble(kEnsemble);
    schedule_data all;
    all.scope = service_id{0xE1, kEnsemble, 0xC224};
    all.programmes.resize(1);
    all.programmes[0].start = {spi_builder::mjd(2017, 1, 1), 22, 0};
    feed_pi(pi_object({all}));
    EXPECT_EQ(take_programmes().size(), 1U);
    set_ensemble(0);
    feed_pi(pi_object({all}));
    EXPECT_THAT(take_programmes(), IsEmpty());
}

TEST_F(SpiParser, ChangingTheEnsembleForgetsNoObjects) {
    parses("a", service_named("R4"));
    set_ensemble(kEnsemble);
    EXPECT_FALSE(parses("a", service_named("R4")));
}

TEST_F(SpiParser, BodyIsMovedOutOfTheEventWhetherItIsParsedOrNot) {
    for (const std::uint16_t subtype : {kServiceInformation, kServiceInformation, std::uint16_t{2}}) {
        spi::MotBodyMetadata metadata;
        metadata.content_subtype = subtype;
        metadata.content_name = "a";
        const auto body =
            std::make_shared<spi::spi_body_event>(metadata, body_of(service_named("R4")), kOneService);
        handle(body);
        EXPECT_EQ(body->body.size, 0U);
        EXPECT_EQ(body->body.data, nullptr);
        EXPECT_EQ(body->metadata.content_name, "a");
    }
}

TEST_F(SpiParser, EmptyBodyIsRememberedAndSendsNothing) {
    EXPECT_FALSE(parses("a", {}));
    feed(kProgrammeInformation, "b", {});
    EXPECT_THAT(router.take_codes(), IsEmpty());
    EXPECT_TRUE(parses("a", service_named("R4")));
}

TEST_F(SpiParser, AnswersTheRequestToTerminateOnce) {
    handle(std::make_shared<spi::term_event>());
    EXPECT_THAT(router.take_codes(), ElementsAre(Pair(spi::QID_SERV, spi::EC_TERM)));
}

TEST_F(SpiParser, OtherEventsAreIgnored) {
    parses("a", service_named("R4"));
    handle(std::make_shared<spi::temp_root_event>("/nowhere"));
    handle(std::make_shared<spi::logo_root_event>("/nowhere"));
    handle(std::make_shared<spi::set_service_event>(kOneService));
    handle(std::make_shared<spi::image_body_event>(spi::MotBodyMetadata(), body_of({1}), kOneService));
    handle(std::make_shared<spi::pi_programme_event>(kOneService, spi::PiScheduleProgramme()));
    handle(std::make_shared<spi::si_service_event>(kOneService, spi::SiServiceInfo()));
    handle(std::make_shared<spi::cb_register_event>(nullptr));
    handle(
        std::make_shared<spi::nownext_update_event>(spi::PiScheduleProgramme(), spi::PiScheduleProgramme()));
    handle(std::make_shared<spi::resend_nownext_event>());
    handle(std::make_shared<spi::si_logo_event>(spi::SpiLogoInfo()));
    handle(std::make_shared<spi::i_evt_base>(spi::EC_NONE));
    handle(std::make_shared<spi::i_evt_base>(spi::EC_IMAGE));
    handle(std::make_shared<spi::i_evt_base>(spi::EC_SPI));
    handle(std::make_shared<spi::i_evt_base>(spi::EC_MAX));
    EXPECT_THAT(router.take_codes(), IsEmpty());
    EXPECT_FALSE(parses("a", service_named("R4")));
}

TEST_F(SpiParser, ImageBodiesStayInTheirEvent) {
    const auto image =
        std::make_shared<spi::image_body_event>(spi::MotBodyMetadata(), body_of({1, 2}), kOneService);
    handle(image);
    EXPECT_EQ(image->body.size, 2U);
}

TEST_F(SpiParser, EventWithoutAPayloadIsIgnored) {
    handle(nullptr);
    EXPECT_THAT(router.take_codes(), IsEmpty());
}

TEST_F(SpiParser, WritesNoLogLine) {
    const captured_stderr log;
    set_ensemble(kEnsemble);
    feed_si(service_named("R4"));
    feed_si(cut(service_named("R4"), 7));
    feed_pi(schedule_on(kEnsemble));
    feed_pi(cut(schedule_on(kEnsemble), 9));
    feed_pi(schedule_on(0xC186));
    feed(2, "a", {1, 2, 3});
    handle(nullptr);
    EXPECT_EQ(log.text(), "");
}

}  // namespace

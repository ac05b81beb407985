// Whole programme information objects, through the worker's handler.
#include "src/parse/body/pi_body_parser.h"

#include "tests/parse/parse_fixture.h"

namespace {

using namespace spi_builder;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class PiBodyParser : public parse_fixture {
 protected:
    PiBodyParser() { set_ensemble(kEnsemble); }

    // The services that an object's programmes are sent for.
    std::vector<spi::ServElemId> services_in(const bytes& object) {
        feed_pi(object);
        std::vector<spi::ServElemId> out;
        for (const sent_programme& sent : take_programmes())
            out.push_back(sent.service);
        return out;
    }
};

constexpr std::uint32_t kFour = 0xC224;
constexpr std::uint32_t kFive = 0xC225;

bytes id_of(std::uint32_t sid, std::uint16_t eid = 0xC185, std::uint8_t ecc = 0xE1) {
    return content_id(ecc, eid, sid);
}
bytes default_id(const bytes& id) {
    return elem(tag::default_content_id, id);
}
bytes service_scope(const bytes& id) {
    return elem(tag::service_scope, {attr(attribute::service_scope::id, id)});
}
bytes scope(const bytes& id) {
    return elem(tag::scope, {service_scope(id)});
}
bytes bearer(const bytes& id) {
    return elem(tag::location, {elem(tag::bearer, {attr(attribute::bearer::id, id)})});
}
bytes programme(const std::string& name, const bytes& more = {}) {
    return elem(tag::programme, {elem(tag::medium_name, {text(name)}), more});
}
bytes schedule(const std::vector<bytes>& children) {
    return elem(tag::schedule, children);
}
bytes epg(const std::vector<bytes>& children) {
    return elem(tag::epg, children);
}

TEST_F(PiBodyParser, SendsAProgrammeWithEverythingThatIsRead) {
    programme_data data;
    data.name = {"N", "News", "News at Ten"};
    data.start = {spi_builder::mjd(2017, 1, 1), 22, 0, 2};
    data.duration = 1800;
    data.short_id = 0x123456;
    data.bearers = {service_id{0xE1, kEnsemble, kFive, 3}};
    schedule_data all;
    all.scope = service_id{0xE1, kEnsemble, kFour, 1};
    all.scope_start = data.start;
    all.programmes = {data};
    feed_pi(pi_object({all}));
    const auto sent = take_programmes();
    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(sent[0].service, service_of(0xE1, kFour, 1));
    const spi::PiScheduleProgramme& read = sent[0].programme;
    EXPECT_EQ(read.eid, kEnsemble);
    EXPECT_EQ(read.crid, 0x123456U);
    EXPECT_EQ(read.bearer, service_of(0xE1, kFive, 3));
    EXPECT_EQ(read.name, "News at Ten");
    EXPECT_EQ(read.time.mjd, 57754U);
    EXPECT_EQ(read.time.hour, 22);
    EXPECT_EQ(read.time.minute, 0);
    EXPECT_EQ(read.time.second, 0);
    EXPECT_EQ(read.time.lto, 2);
    EXPECT_EQ(read.duration, 1800);
}

TEST_F(PiBodyParser, SendsProgrammesInObjectOrderForTheServiceOfTheScope) {
    const bytes object = epg({schedule({scope(id_of(0xC221)), programme("one", bearer(id_of(kFour))),
                                        programme("two", bearer(id_of(kFive))), programme("three")})});
    EXPECT_THAT(names_in_pi(object), ElementsAre("one", "two", "three"));
    const spi::ServElemId service = service_of(0xE1, 0xC221);
    EXPECT_THAT(services_in(object), ElementsAre(service, service, service));
}

TEST_F(PiBodyParser, ScopeHoldsForEveryLaterScheduleOfTheObject) {
    const bytes object =
        epg({schedule({programme("too early"), scope(id_of(kFour)), programme("one")}),
             schedule({programme("two", bearer(id_of(kFive)))}),
             schedule({scope(id_of(kFive)), programme("three")}), schedule({programme("four")})});
    EXPECT_THAT(names_in_pi(object), ElementsAre("one", "two", "three", "four"));
    EXPECT_THAT(services_in(object), ElementsAre(service_of(0xE1, kFour), service_of(0xE1, kFour),
                                                 service_of(0xE1, kFive), service_of(0xE1, kFive)));
}

TEST_F(PiBodyParser, ScopeHoldsForALaterEpgElementButNotForTheNextObject) {
    const bytes later = epg({schedule({programme("one")})});
    EXPECT_THAT(services_in(join({epg({schedule({scope(id_of(kFour))})}), later})),
                ElementsAre(service_of(0xE1, kFour)));
    EXPECT_THAT(services_in(later), IsEmpty());
}

TEST_F(PiBodyParser, WithoutAScopeEachProgrammeIsSentForItsOwnBearer) {
    EXPECT_THAT(services_in(epg({schedule(
                    {programme("one", bearer(id_of(kFour))), programme("two", bearer(id_of(kFive)))})})),
                ElementsAre(service_of(0xE1, kFour), service_of(0xE1, kFive)));
}

TEST_F(PiBodyParser, ProgrammeOfAnotherEnsembleIsDropped) {
    EXPECT_THAT(names_in_pi(epg({schedule({programme("other", bearer(id_of(kFour, 0xC186))),
                                           programme("none"), programme("one", bearer(id_of(kFive)))})})),
                ElementsAre("one"));
}

// Keeps why programmes are dropped, in place of the worker.
class dropped_programmes final : public spi::SpiBodyListener {
 public:
    explicit dropped_programmes(const bytes& object) {
        spi::PiBodyParser(*this, 0xC185).parse(body_of(object));
    }
    void programme_read(const spi::ServElemId& /*service*/, spi::PiScheduleProgramme&& /*programme*/,
                        std::uint32_t /*offset*/) override {
        ++read;
    }
    void programme_dropped(spi::no_service why, spi::PiScheduleProgramme&& programme,
                           std::uint32_t offset) override {
        reasons.push_back(why.reason);
        ensembles.push_back(why.ensemble);
        names.push_back(programme.name);
        offsets.push_back(offset);
    }
    void service_read(const spi::ServElemId& /*received_with*/, spi::SiServiceInfo&& /*info*/,
                      std::uint32_t /*offset*/) override {}

    unsigned read = 0;
    std::vector<spi::no_service::reason_t> reasons;
    std::vector<std::uint16_t> ensembles;
    std::vector<std::string> names;
    std::vector<std::uint32_t> offsets;
};

TEST(PiBodyListener, IsToldWhyAProgrammeIsDropped) {
    const bytes object =
        epg({schedule({programme("none"), programme("zero", bearer(id_of(0))),
                       programme("other", join({bearer(id_of(kFour, 0xC186)), bearer(id_of(kFour, 0xC187))})),
                       programme("both", join({bearer(id_of(kFour, 0xC186)), bearer(id_of(0))})),
                       programme("read", bearer(id_of(kFour)))})});
    const dropped_programmes dropped(object);
    EXPECT_EQ(dropped.read, 1U);
    EXPECT_THAT(dropped.names, ElementsAre("none", "zero", "other", "both"));
    EXPECT_THAT(dropped.reasons,
                ElementsAre(spi::no_service::not_named, spi::no_service::zero_identifier,
                            spi::no_service::other_ensemble, spi::no_service::zero_identifier));
    EXPECT_EQ(dropped.ensembles[2], 0xC186);
    for (const std::uint32_t offset : dropped.offsets)
        EXPECT_EQ(object.at(offset), tag::programme);
}

TEST(PiBodyListener, IsToldOfTheEnsembleThatTheObjectNames) {
    const dropped_programmes dropped(
        epg({default_id(id_of(kFour, 0xC188)),
             schedule({scope(id_of(kFour, 0xC186)), programme("x", bearer(id_of(kFour, 0xC187)))}),
             schedule({scope(id_of(0)), programme("y", bearer(id_of(kFour, 0xC187)))})}));
    EXPECT_THAT(dropped.reasons,
                ElementsAre(spi::no_service::other_ensemble, spi::no_service::zero_identifier));
    EXPECT_EQ(dropped.ensembles.front(), 0xC188);
}

TEST_F(PiBodyParser, ScopeOfAnotherEnsembleIsIgnored) {
    EXPECT_THAT(services_in(epg({schedule({scope(id_of(kFour, 0xC186)), programme("dropped"),
                                           programme("one", bearer(id_of(kFive)))})})),
                ElementsAre(service_of(0xE1, kFive)));
    EXPECT_THAT(
        services_in(epg({schedule({scope(id_of(kFive)), scope(id_of(kFour, 0xC186)), programme("one")})})),
        ElementsAre(service_of(0xE1, kFive)));
}

TEST_F(PiBodyParser, IdentifierWithoutServiceOrEccIsNone) {
    for (const bytes& unset : {id_of(0), id_of(kFour, kEnsemble, 0)}) {
        EXPECT_THAT(services_in(epg({schedule({scope(unset), programme("x", bearer(id_of(kFive)))})})),
                    ElementsAre(service_of(0xE1, kFive)));
        EXPECT_THAT(services_in(epg({schedule({scope(unset), programme("x")})})), IsEmpty());
        EXPECT_THAT(services_in(epg({schedule({programme("x", bearer(unset))})})), IsEmpty());
    }
}

TEST_F(PiBodyParser, DefaultContentIdOfTheObjectNamesTheService) {
    EXPECT_THAT(services_in(epg({default_id(id_of(kFour)), schedule({programme("x")})})),
                ElementsAre(service_of(0xE1, kFour)));
    EXPECT_THAT(services_in(epg({default_id(id_of(kFour, 0xC186)), schedule({programme("x")})})), IsEmpty());
}

TEST_F(PiBodyParser, LaterOfDefaultContentIdAndScopeWins) {
    EXPECT_THAT(services_in(epg({default_id(id_of(kFour)), schedule({scope(id_of(kFive)), programme("x")})})),
                ElementsAre(service_of(0xE1, kFive)));
    EXPECT_THAT(services_in(epg({schedule({scope(id_of(kFive)), programme("x")}), default_id(id_of(kFour)),
                                 schedule({programme("y")})})),
                ElementsAre(service_of(0xE1, kFive), service_of(0xE1, kFour)));
}

TEST_F(PiBodyParser, ServiceScopeIsBoundedByItsElementNotByItsAttribute) {
    // The attribute holds four bytes of six; the service identifier is taken from what follows it.
    const bytes four = cut(id_of(kFour), 4);
    const bytes element = elem(tag::service_scope, {attr(0x80, four), bytes{0xC2, 0x00}});
    EXPECT_THAT(services_in(epg({schedule({elem(tag::scope, element), programme("x")})})),
                ElementsAre(service_of(0xE1, 0xC200)));
    // With nothing behind the attribute in the element, what follows the element is not taken.
    const bytes bare = elem(tag::service_scope, {attr(0x80, four)});
    EXPECT_THAT(
        services_in(epg({schedule({elem(tag::scope, join({bare, bytes{0xC2, 0x00}})), programme("x")})})),
        ElementsAre(service_of(0xE1, 0xFFFF)));
}

TEST_F(PiBodyParser, LastAcceptedIdentifierOfAServiceScopeWins) {
    const bytes element = elem(tag::service_scope, {attr(0x80, id_of(kFour)), attr(0x81, id_of(0xC229)),
                                                    attr(0x80, id_of(kFive)), attr(0x80, id_of(0xC22A, 1))});
    EXPECT_THAT(services_in(epg({schedule({elem(tag::scope, element), programme("x")})})),
                ElementsAre(service_of(0xE1, kFive)));
}

TEST_F(PiBodyParser, TokensAreExpandedInNames) {
    EXPECT_THAT(names_in_pi(epg({token_table({{0x01, "News"}}), default_id(id_of(kFour)),
                                 schedule({programme("\x01 at Ten")})})),
                ElementsAre("News at Ten"));
}

TEST_F(PiBodyParser, TokenTableBehindTheProgrammeDoesNotExpandIt) {
    EXPECT_THAT(names_in_pi(epg({default_id(id_of(kFour)), schedule({programme("\x01 at Ten")}),
                                 token_table({{0x01, "News"}}), schedule({programme("\x01 at Six")})})),
                ElementsAre(" at Ten", "News at Six"));
}

TEST_F(PiBodyParser, TokensHoldOverSeveralEpgElementsOfOneObjectOnly) {
    const bytes use = epg({default_id(id_of(kFour)), schedule({programme("\x01!")})});
    EXPECT_THAT(names_in_pi(join({epg({token_table({{0x01, "News"}})}), use})), ElementsAre("News!"));
    EXPECT_THAT(names_in_pi(use), ElementsAre("!"));
}

TEST_F(PiBodyParser, ReadsElementsOnlyWhereTheyBelong) {
    const bytes one = programme("x", bearer(id_of(kFour)));
    EXPECT_THAT(names_in_pi(one), IsEmpty());
    EXPECT_THAT(names_in_pi(schedule({one})), IsEmpty());
    EXPECT_THAT(names_in_pi(epg({one})), IsEmpty());
    EXPECT_THAT(names_in_pi(elem(tag::service_information, {schedule({one})})), IsEmpty());
    EXPECT_THAT(names_in_pi(epg({schedule({schedule({one})})})), IsEmpty());
    EXPECT_THAT(names_in_pi(epg({schedule({service_scope(id_of(kFour)), programme("y")})})), IsEmpty());
    EXPECT_THAT(names_in_pi(epg({schedule({default_id(id_of(kFour)), programme("y")})})), IsEmpty());
}

TEST_F(PiBodyParser, PassesOverAttributesAndUnknownElements) {
    const bytes unknown = elem(0x99, bytes(70000, 0x1C));
    EXPECT_THAT(
        names_in_pi(join({unknown,
                          epg({attr(0x80, u16(1)), unknown, elem(tag::programme_groups, {programme("group")}),
                               default_id(id_of(kFour)),
                               schedule({attr(0x80, u16(1)), unknown, programme("one"), unknown})}),
                          unknown})),
        ElementsAre("one"));
}

TEST_F(PiBodyParser, ProgrammeWithoutContentIsSentWhenTheServiceIsKnown) {
    feed_pi(epg({default_id(id_of(kFour)), schedule({elem(tag::programme, bytes{})})}));
    const auto sent = take_programmes();
    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(sent[0].programme.name, "");
    EXPECT_EQ(sent[0].programme.time.mjd, 0U);
    EXPECT_EQ(sent[0].programme.duration, 0);
}

TEST_F(PiBodyParser, ProgrammesDoNotInheritFromEachOther) {
    const bytes long_form = attr(0x80, time_point(57754, 22, 30, 2, utc_fraction{17, 0}));
    const bytes short_form = attr(0x80, time_point(57754, 23, 30));
    feed_pi(epg({default_id(id_of(kFour)),
                 schedule({programme("one", elem(tag::location, {elem(tag::time, long_form)})),
                           elem(tag::programme, {elem(tag::location, {elem(tag::time, short_form)})})})}));
    const auto sent = take_programmes();
    ASSERT_EQ(sent.size(), 2U);
    EXPECT_EQ(sent[0].programme.time.second, 17);
    EXPECT_EQ(sent[1].programme.name, "");
    EXPECT_EQ(sent[1].programme.time.second, 0);
    EXPECT_EQ(sent[1].programme.time.lto, 0);
}

TEST_F(PiBodyParser, EmptyObjectsSendNothing) {
    EXPECT_THAT(names_in_pi({}), IsEmpty());
    EXPECT_THAT(names_in_pi(epg({})), IsEmpty());
    EXPECT_THAT(names_in_pi(epg({schedule({})})), IsEmpty());
}

TEST_F(PiBodyParser, ParseReturnsZeroAndTakesTheBody) {
    spi::PiBodyParser direct(parser, kEnsemble);
    spi::MotBody body = body_of(epg({schedule({programme("x", bearer(id_of(kFour)))})}));
    EXPECT_EQ(direct.parse(std::move(body)), 0);
    EXPECT_EQ(body.size, 0U);  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(body.data, nullptr);
    EXPECT_EQ(take_programmes().size(), 1U);
    EXPECT_EQ(direct.parse(spi::MotBody()), 0);
}

TEST(PiScheduleScope, KeepsTheValidityThatIsCoded) {
    spi::PiScheduleScope read;
    read.eid = 0xC185;
    element_of element(elem(tag::scope, {attr(attribute::scope::start_time, time_point(57754, 1, 2)),
                                         attr(attribute::scope::stop_time, time_point(57755, 3, 4, 2)),
                                         service_scope(id_of(0xC221))}));
    EXPECT_EQ(read.parse(element), 0);
    EXPECT_EQ(read.start.mjd, 57754U);
    EXPECT_EQ(read.start.hour, 1);
    EXPECT_EQ(read.start.minute, 2);
    EXPECT_EQ(read.stop.mjd, 57755U);
    EXPECT_EQ(read.stop.hour, 3);
    EXPECT_EQ(read.stop.minute, 4);
    EXPECT_EQ(read.stop.lto, 2);
    EXPECT_EQ(read.seid, service_of(0xE1, 0xC221));
}

TEST(PiScheduleScope, EmptyElementChangesNothing) {
    spi::PiScheduleScope read;
    read.seid = service_of(1, 2, 3);
    element_of element(elem(tag::scope, bytes{}));
    EXPECT_EQ(read.parse(element), 0);
    EXPECT_EQ(read.start.mjd, 0U);
    EXPECT_EQ(read.seid, service_of(1, 2, 3));
}

TEST(PiScheduleScope, HandlersReturnZeroWhateverTheEnsemble) {
    spi::PiScheduleScope read;
    read.eid = 1;
    element_of content_id_element(default_id(id_of(0xC221)));
    EXPECT_EQ(read.parse_content_id(content_id_element), 0);
    element_of scope_element(service_scope(id_of(0xC221)));
    spi::ServElemId id;
    EXPECT_EQ(read.parse_seid(scope_element, id), 0);
    EXPECT_EQ(id, service_of(0, 0));
    EXPECT_EQ(read.seid, service_of(0, 0));
}

}  // namespace

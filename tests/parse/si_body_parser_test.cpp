// Whole service information objects, through the worker's handler.
#include "src/parse/body/si_body_parser.h"

#include "tests/parse/parse_fixture.h"

namespace {

using namespace spi_builder;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using SiBodyParser = parse_fixture;

bytes named(const std::string& name) {
    return elem(tag::service, {elem(tag::medium_name, {text(name)})});
}
bytes ensemble(const std::vector<bytes>& children) {
    return elem(tag::ensemble, children);
}
bytes si(const std::vector<bytes>& children) {
    return elem(tag::service_information, children);
}

TEST_F(SiBodyParser, SendsEachServiceWithItsNameIdentifierAndLogos) {
    service_data data;
    data.name = {"R4", "Radio 4", ""};
    data.bearers = {{0xE1, kEnsemble, 0xC221, 2}};
    data.logos = {{"image/png", "logos/r4", {}, 320, 240}, {"", "logos/r4.jpg", logo_colour_square, {}, {}}};
    feed_si(si_object(0xE1, kEnsemble, {data}), service_of(0xE1, 0xD001, 5));
    const auto sent = take_services();
    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(sent[0].received_with, service_of(0xE1, 0xD001, 5));
    EXPECT_EQ(sent[0].info.id, service_of(0xE1, 0xC221, 2));
    EXPECT_EQ(sent[0].info.name, "Radio 4");
    ASSERT_EQ(sent[0].info.logos.size(), 2U);
    const spi::SpiLogoInfo& first = sent[0].info.logos.front();
    EXPECT_EQ(first.service, service_of(0xE1, 0xC221, 2));
    EXPECT_EQ(first.image_format, 2);
    EXPECT_EQ(first.size_code, 4);
    EXPECT_EQ(first.name, "logos/r4");
    const spi::SpiLogoInfo& second = sent[0].info.logos.back();
    EXPECT_EQ(second.image_format, 1);
    EXPECT_EQ(second.size_code, 1);
    EXPECT_EQ(second.name, "logos/r4.jpg");
}

TEST_F(SiBodyParser, SendsServicesInObjectOrder) {
    EXPECT_THAT(names_in_si(si({ensemble({named("one"), named("two")}), ensemble({named("three")})})),
                ElementsAre("one", "two", "three"));
}

TEST_F(SiBodyParser, SendsAServiceWithoutNameBearerOrLogos) {
    EXPECT_THAT(names_in_si(si({ensemble({elem(tag::service, bytes{})})})), ElementsAre(""));
    feed_si(si({ensemble({elem(tag::service, bytes{})})}));
    const auto sent = take_services();
    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(sent[0].info.id, service_of(0, 0));
    EXPECT_TRUE(sent[0].info.logos.empty());
}

TEST_F(SiBodyParser, ReadsEveryServiceInformationElementOfTheBody) {
    EXPECT_THAT(names_in_si(join({si({ensemble({named("one")})}), elem(0x55, bytes(300, 0x03)),
                                  si({ensemble({named("two")})})})),
                ElementsAre("one", "two"));
}

TEST_F(SiBodyParser, TokensHoldForTheRestOfTheObject) {
    const bytes table = token_table({{0x01, "Radio"}});
    EXPECT_THAT(names_in_si(join({si({ensemble({named("\x01 0")}), table, ensemble({named("\x01 1")})}),
                                  si({ensemble({named("\x01 2")})})})),
                ElementsAre(" 0", "Radio 1", "Radio 2"));
}

TEST_F(SiBodyParser, TokensDoNotHoldForTheNextObject) {
    names_in_si(si({token_table({{0x01, "Radio"}})}));
    EXPECT_THAT(names_in_si(si({ensemble({named("\x01 1")})})), ElementsAre(" 1"));
}

TEST_F(SiBodyParser, ReadsElementsOnlyWhereTheyBelong) {
    EXPECT_THAT(names_in_si(named("in the body")), IsEmpty());
    EXPECT_THAT(names_in_si(si({named("in service information")})), IsEmpty());
    EXPECT_THAT(names_in_si(ensemble({named("in an ensemble alone")})), IsEmpty());
    EXPECT_THAT(names_in_si(elem(tag::epg, {ensemble({named("in an epg")})})), IsEmpty());
    EXPECT_THAT(names_in_si(si({ensemble({ensemble({named("nested")})})})), IsEmpty());
    EXPECT_THAT(names_in_si(si({ensemble({token_table({{0x01, "Radio"}}), named("\x01 4")})})),
                ElementsAre(" 4"));
}

TEST_F(SiBodyParser, PassesOverAttributesAndUnknownElements) {
    const bytes unknown = elem(0x99, bytes(70000, 0x28));
    EXPECT_THAT(names_in_si(join({unknown,
                                  si({attr(0x80, u16(1)), unknown,
                                      ensemble({attr(attribute::ensemble::id, u24(0xE1C185)),
                                                elem(tag::medium_name, {text("of the ensemble")}), unknown,
                                                named("one"), unknown}),
                                      unknown}),
                                  unknown})),
                ElementsAre("one"));
}

TEST_F(SiBodyParser, LongFormsOfLengthsAreReadAlike) {
    const bytes service = elem_ff(tag::service, elem_fe(tag::medium_name, elem_fe(tag::text, str("one"))));
    EXPECT_THAT(
        names_in_si(elem_fe(tag::service_information, elem_ff(tag::ensemble, join({service, service})))),
        ElementsAre("one", "one"));
}

TEST_F(SiBodyParser, EmptyObjectsSendNothing) {
    EXPECT_THAT(names_in_si({}), IsEmpty());
    EXPECT_THAT(names_in_si(si({})), IsEmpty());
    EXPECT_THAT(names_in_si(si({ensemble({})})), IsEmpty());
}

TEST_F(SiBodyParser, ThreeByteLengthInTheLastThreeBytesEndsTheElementBehindItsTag) {
    // The service is sent, but without content; what follows its tag holds no element that is read.
    EXPECT_THAT(names_in_si({0x03, 0xFE, 0x00, 0x08, 0x26, 0xFE, 0x00, 0x04, 0x28, 0xFF, 0x00, 0x00}),
                ElementsAre(""));
}

TEST_F(SiBodyParser, ParseReturnsZeroAndTakesTheBody) {
    spi::SiBodyParser direct(parser);
    spi::MotBody body = body_of(si({ensemble({named("one")})}));
    EXPECT_EQ(direct.parse(service_of(0xE1, 0xD001), std::move(body)), 0);
    EXPECT_EQ(body.size, 0U);  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(body.data, nullptr);
    EXPECT_EQ(take_services().size(), 1U);
    EXPECT_EQ(direct.parse(service_of(0xE1, 0xD001), spi::MotBody()), 0);
}

}  // namespace

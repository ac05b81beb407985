// The XML document that an object stands for.
#include "tools/spi/xml_document.h"

#include <pugixml.hpp>

#include "tests/tools/spi/decoded.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

struct parsed {
    pugi::xml_document xml;
    so::xml_document document;
};

// Also checks that it is well-formed XML in the right namespace.
std::unique_ptr<parsed> xml_of(const sb::bytes& body) {
    auto result = std::make_unique<parsed>();
    result->document = so::xml_of(so::decode(body));
    const auto status =
        result->xml.load_string(result->document.text.c_str(),
                                pugi::parse_default | pugi::parse_ws_pcdata_single | pugi::parse_comments);
    EXPECT_TRUE(status) << status.description() << "\n" << result->document.text;
    EXPECT_STREQ(result->xml.document_element().attribute("xmlns").value(),
                 "http://www.worlddab.org/schemas/spi/31");
    return result;
}

std::string value_at(const parsed& in, const char* path) {
    const pugi::xpath_node found = in.xml.select_node(path);
    if (!found) ADD_FAILURE() << "nothing at " << path << " in\n" << in.document.text;
    return found.attribute() ? found.attribute().value() : found.node().child_value();
}

sb::bytes named(const std::string& name) {
    return around_programme(sb::elem(0x12, {sb::text(name)}));
}

TEST(XmlDocument, IsTheDocumentOfAProgramme) {
    sb::schedule_data schedule;
    schedule.scope = sb::service_id{0xE0, 0x10C1, 0x1A01, 0};
    sb::programme_data programme;
    programme.name = {"", "", "\x01 & more"};
    programme.start = {sb::mjd(2026, 3, 10), 6, 0, 2};
    programme.duration = 5400;
    schedule.programmes = {programme};
    EXPECT_EQ(so::xml_of(so::decode(sb::pi_object({schedule}, {{1, "News"}}))).text,
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<epg xmlns=\"http://www.worlddab.org/schemas/spi/31\">\n"
              " <schedule>\n"
              "  <scope>\n"
              "   <serviceScope id=\"dab:1e0.10c1.1a01.0\" />\n"
              "  </scope>\n"
              "  <programme>\n"
              "   <longName>News &amp; more</longName>\n"
              "   <location>\n"
              "    <time time=\"2026-03-10T07:00:00+01:00\" duration=\"PT1H30M\" />\n"
              "   </location>\n"
              "  </programme>\n"
              " </schedule>\n"
              "</epg>\n");
}

TEST(XmlDocument, BothBearersHaveOneName) {
    const auto xml = xml_of(around_service(sb::elem(
        0x29, {sb::attr(0x80, sb::content_id(0xE0, 0x10C1, 0x1A01)), sb::attr(0x82, sb::str("u"))})));
    EXPECT_EQ(value_at(*xml, "/serviceInformation/ensemble/service/bearer/@id"), "dab:1e0.10c1.1a01.0");
    EXPECT_EQ(value_at(*xml, "/serviceInformation/ensemble/service/bearer/@url"), "u");
}

TEST(XmlDocument, TheDefaultLanguageIsThatOfTheTopElement) {
    EXPECT_EQ(value_at(*xml_of(sb::elem(0x02, {sb::elem(0x06, sb::str("nb-NO"))})), "/epg/@xml:lang"),
              "nb-NO");
}

TEST(XmlDocument, ADefaultContentIdIsThatOfBearersWithoutOne) {
    const sb::bytes id = sb::elem(0x05, sb::content_id(0xE0, 0x10C1, 0x1A01));
    const sb::bytes programme = sb::elem(0x1C, {sb::elem(0x19, {sb::elem(0x2D, {})})});
    const auto xml =
        xml_of(sb::elem(0x02, {id, sb::elem(0x21, {sb::elem(0x24, {sb::elem(0x25, {})}), programme})}));
    EXPECT_EQ(value_at(*xml, "//serviceScope/@id"), "dab:1e0.10c1.1a01.0");
    EXPECT_EQ(value_at(*xml, "//bearer/@id"), "dab:1e0.10c1.1a01.0");
    EXPECT_THAT(xml->document.text, testing::Not(HasSubstr("<!--")));
    EXPECT_THAT(xml_of(sb::elem(0x02, {id}))->document.text,
                HasSubstr("<!-- default content ID: dab:1e0.10c1.1a01.0 -->"));
}

TEST(XmlDocument, PlacesAreTextOfTheirElement) {
    const sb::bytes position = {0x48, 0x42, 0x72, 0xFE, 0x3D, 0x53};
    const auto xml = xml_of(around_service(sb::elem(
        sb::tag::geolocation,
        {sb::elem(sb::tag::point, position), sb::elem(sb::tag::polygon, {sb::elem(0x01, position)})})));
    EXPECT_EQ(value_at(*xml, "//point"), "51.473935 -2.508109");
    EXPECT_EQ(value_at(*xml, "//polygon"), "51.473935 -2.508109");
}

TEST(XmlDocument, BytesThatAreNotUtf8AndForbiddenCharactersAreReplacedAndNoted) {
    const auto xml =
        xml_of(named("a\x1B"
                     "b\xE9 c\xEF\xBF\xBE"));
    EXPECT_EQ(value_at(*xml, "//longName"),
              "a\xEF\xBF\xBD"
              "b\xEF\xBF\xBD c\xEF\xBF\xBD");
    ASSERT_EQ(xml->document.notes.size(), 1U);
    EXPECT_EQ(xml->document.notes[0].text,
              "text: 3 characters that XML cannot carry, or bytes that are not UTF-8, replaced by U+FFFD");
    EXPECT_EQ(xml->document.notes[0].offset, 10U);
}

TEST(XmlDocument, ZeroBytesDoNotEndATextEarly) {
    EXPECT_EQ(value_at(*xml_of(named(std::string("a\0b", 3))), "//longName"),
              "a\xEF\xBF\xBD"
              "b");
}

TEST(XmlDocument, TabsAndLineEndsSurvive) {
    EXPECT_EQ(value_at(*xml_of(named("a\tb\nc\r\nd\r")), "//longName"), "a\tb\nc\r\nd\r");
    EXPECT_EQ(
        value_at(*xml_of(around_programme(sb::attr(0x80, sb::str("a\tb\nc\r\"<'>&")))), "//programme/@id"),
        "a\tb\nc\r\"<'>&");
    EXPECT_EQ(value_at(*xml_of(named("&#01;")), "//longName"), "&#01;");
}

TEST(XmlDocument, WhatXmlHasNoPlaceForIsACommentAndNoted) {
    const auto xml =
        xml_of(sb::elem(0x02, {sb::elem(0x7A, sb::str("--")),
                               sb::elem(0x21, {sb::attr(0x80, {1}), sb::attr(0x82, sb::str("a")),
                                               sb::attr(0x82, sb::str("b")), sb::attr(0x8F, {})})}));
    EXPECT_EQ(value_at(*xml, "//schedule/@originator"), "a");
    EXPECT_THAT(xml->document.text, HasSubstr("<!-- an unknown element, 0x7A: 2 bytes at byte 2 -->"));
    EXPECT_THAT(xml->document.text,
                HasSubstr("<!-- a value that means nothing, @version: 1 byte at byte 8 -->"));
    EXPECT_THAT(xml->document.text, HasSubstr("<!-- a second attribute, @originator: 1 byte at byte 14 -->"));
    EXPECT_THAT(xml->document.text, HasSubstr("<!-- an unknown attribute, 0x8F: 0 bytes at byte 17 -->"));
    ASSERT_EQ(xml->document.notes.size(), 4U);
    EXPECT_EQ(xml->document.notes[0].text, "an unknown element (0x7A) is a comment in the XML");
}

TEST(XmlDocument, TextsWrittenForCodedValuesAreCarriedOver) {
    const auto xml = xml_of(
        around_programme(sb::elem(0x14, sb::attr(0x80, sb::str("urn:tva:metadata:cs:ContentCS:2011:3.6")))));
    EXPECT_EQ(value_at(*xml, "//genre/@href"), "urn:tva:metadata:cs:ContentCS:2011:3.6");
}

TEST(XmlDocument, OfNoObjectThereIsNone) {
    EXPECT_EQ(so::xml_of(so::decode(sb::elem(0x1C, {}))).text, "");
    EXPECT_EQ(so::xml_of(so::decode(so::byte_view())).text, "");
}

TEST(XmlDocument, OnlyTheFirstTopElementIsInIt) {
    const auto xml = xml_of(sb::join({sb::elem(0x02, {}), sb::elem(0x03, {})}));
    ASSERT_EQ(xml->document.notes.size(), 1U);
    EXPECT_EQ(xml->document.notes[0].text, "serviceInformation beside the top element is not in the XML");
}

}  // namespace

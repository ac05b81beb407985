// Everything that the encoder refuses, in its words.

#include "tests/tools/encode/encoding.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

// The one error, without the place.
std::string error_in(const std::string& document) {
    const std::vector<std::string> errors = errors_of(document);
    if (errors.size() != 1) return "there are: " + testing::PrintToString(errors);
    return errors.front().substr(errors.front().find(": ") + 2);
}

// What is wrong with an attribute's value.
std::string value_error(const std::string& element, const std::string& attribute, const std::string& value) {
    const std::string error =
        error_in(programme_document("<" + element + " " + attribute + "=\"" + value + "\"/>"));
    return error.substr(error.find(": ") + 2);
}

std::string time_error(const std::string& attribute, const std::string& value) {
    const std::string error =
        error_in(programme_document("<location><time " + attribute + "=\"" + value + "\"/></location>"));
    return error.substr(error.find(": ") + 2);
}

TEST(DocumentErrors, OtherNamespaces) {
    EXPECT_EQ(error_in("<epg/>"),
              "epg: the element is in no namespace; SPI documents are in "
              "xmlns=\"http://www.worlddab.org/schemas/spi/31\"");
    EXPECT_EQ(error_in("<epg xmlns='http://example.org/spi'/>"),
              "epg: the element is in the namespace \"http://example.org/spi\"; SPI documents are in "
              "xmlns=\"http://www.worlddab.org/schemas/spi/31\"");
    EXPECT_THAT(errors_of("<epg xmlns='http://www.worlddab.org/schemas/spi/x'/>"), SizeIs(1));
}

TEST(DocumentErrors, OtherTopElements) {
    EXPECT_EQ(
        error_in("<schedule xmlns='" + kNamespace + "'/>"),
        "schedule: no SPI document begins with this element; it begins with <serviceInformation> or <epg>");
}

TEST(DocumentErrors, UnknownElements) {
    EXPECT_EQ(
        error_in(programme_document("<mediumname>x</mediumname>")),
        "epg/schedule/programme/mediumname: there is no element <mediumname>; did you mean \"mediumName\"?");
    EXPECT_EQ(error_in(pi_document("<timetable/>")),
              "epg/timetable: there is no element <timetable>; in <epg> belong: programmeGroups, schedule");
    EXPECT_THAT(errors_of(si_document("<servces/>")),
                testing::Contains(HasSubstr("there is no element <servces>; did you mean \"services\"?")));
}

TEST(DocumentErrors, MisplacedElements) {
    EXPECT_EQ(error_in(programme_document("<country>x</country>")),
              "epg/schedule/programme/country: <country> does not belong in <programme>; it belongs in: "
              "geolocation");
    EXPECT_THAT(
        errors_of(si_document("<services><shortName>x</shortName></services>")),
        testing::Contains(HasSubstr("does not belong in <services>; services and a serviceProvider belong "
                                    "there")));
}

TEST(DocumentErrors, ElementsInATextElement) {
    EXPECT_EQ(error_in(programme_document("<longName>a<b/></longName>")),
              "epg/schedule/programme/longName/b: <longName> holds text, no elements");
}

TEST(DocumentErrors, UnknownAttributes) {
    EXPECT_EQ(error_in(programme_document("<link urj='x'/>")),
              "epg/schedule/programme/link/@urj: <link> has no such attribute; did you mean \"uri\"?");
    EXPECT_EQ(
        error_in(programme_document("<genre colour='x'/>")),
        "epg/schedule/programme/genre/@colour: <genre> has no such attribute; its attributes: href, type");
    EXPECT_EQ(
        error_in(programme_document("<location colour='x'/>")),
        "epg/schedule/programme/location/@colour: <location> has no such attribute; its attributes: none");
}

TEST(DocumentErrors, Numbers) {
    EXPECT_EQ(value_error("memberOf", "index", "65536"), "\"65536\" is no whole number from 0 to 65535");
    EXPECT_EQ(value_error("memberOf", "shortId", "-1"), "\"-1\" is no whole number from 0 to 16777215");
}

TEST(DocumentErrors, Enumerations) {
    EXPECT_EQ(value_error("genre", "type", "first"),
              "\"first\" is no value of type; write one of: main, secondary, other");
}

TEST(DocumentErrors, Times) {
    EXPECT_EQ(
        time_error("time", "2026-03-10T07:00:00"),
        "\"2026-03-10T07:00:00\" has no time zone, so it is no certain moment; say what it is: local time "
        "with its offset, such as +01:00, is shown as it stands; UTC, with Z, is shown as UTC; --offset or "
        "--zone "
        "says it of all");
    EXPECT_EQ(time_error("time", "2026-02-29T07:00:00Z"),
              "\"2026-02-29T07:00:00Z\" is no date and time of the years 1858 to 2217; write it like "
              "2026-03-10T07:00:00+01:00");
    EXPECT_EQ(time_error("time", "2026-03-10T07:00:00+05:45"),
              "\"2026-03-10T07:00:00+05:45\" has an offset that has no coding: half-hours are counted, up to "
              "15:30; "
              "give the time with another offset, or with Z");
}

TEST(DocumentErrors, Durations) {
    EXPECT_EQ(
        time_error("duration", "PT18H12M16S"),
        "\"PT18H12M16S\" is 65536 s, and the coding holds 65535 s (PT18H12M15S) at most; split what lasts so "
        "long");
    EXPECT_EQ(time_error("duration", "90"), "\"90\" is no duration of whole seconds; write it like PT1H30M");
    EXPECT_THAT(errors_of(programme_document("<location><time duration='PT18H12M15S'/></location>")),
                IsEmpty());
}

TEST(DocumentErrors, ServicesAndEnsembles) {
    const std::string error = error_in(service_document("<bearer id='dab:1e0.10c1.1a01'/>"));
    EXPECT_THAT(error,
                HasSubstr("service/bearer/@id: \"dab:1e0.10c1.1a01\" is no DAB service; write it like "
                          "dab:ce1.c185.c221.0: country nibble of the SId and ECC, EId, SId, SCIdS, in "
                          "hexadecimal"));
    EXPECT_THAT(errors_of(service_document("<bearer id='DAB:1e0.10c1.1a01.0'/>")), SizeIs(1));
    EXPECT_THAT(errors_of(service_document("<bearer/>")).at(0),
                HasSubstr("<bearer> has no id; say which it is: id=\"...\""));
    EXPECT_THAT(errors_of(si_document("<ensemble id='10c1'/>")).at(0),
                HasSubstr("\"10c1\" is no ensemble; write it like e1.ce15: ECC and EId, in hexadecimal"));
    EXPECT_THAT(errors_of(si_document("<ensemble/>")).at(0), HasSubstr("<ensemble> has no id"));
}

TEST(DocumentErrors, Genres) {
    EXPECT_THAT(
        value_error("genre", "href", "ContentCS:2005:3.1.1"),
        HasSubstr("is no genre that has a coding; write it like urn:tva:metadata:cs:ContentCS:2005:3.6.8"));
}

TEST(DocumentErrors, GenresWhoseSchemeIsNotTheOneOfTheirNumberAreLeftOut) {
    const auto made = encoded(programme_document("<genre href='urn:tva:metadata:cs:ContentCS:2011:4.2.1'/>"));
    ASSERT_EQ(made.omitted.notes().size(), 1u);
    EXPECT_EQ(made.omitted.notes().front().note.remedy, "ContentCS is the scheme 3, and \"4\" is given");
}

TEST(DocumentErrors, Places) {
    EXPECT_THAT(
        error_in(service_document("<geolocation><point>91 0</point></geolocation>")),
        HasSubstr("\"91 0\" is no place; write latitude and longitude in degrees, like 51.473935 -2.508109"));
}

TEST(DocumentErrors, TokenBytesAndOtherControlCharactersInTexts) {
    EXPECT_EQ(error_in(programme_document("<longName>News&#1;</longName>")),
              "epg/schedule/programme/longName: the control character U+0001; the coding uses such bytes for "
              "tokens; "
              "remove it");
    EXPECT_EQ(value_error("link", "description", "&#x85;"), "the control character U+0085; remove it");
    EXPECT_EQ(value_error("link", "description", "&#xFFFE;"), "the character U+FFFE; remove it");
}

TEST(DocumentErrors, NoServiceOfDab) {
    EXPECT_EQ(
        error_in(si_document("<services><service><bearer id='fm:ce1.c479.09580'/></service></services>")),
        "serviceInformation: no service has a bearer of the DAB domain; add bearers such as <bearer "
        "id=\"dab:ce1.c185.c221.0\"/>, or of a single service say --service dab:ce1.c185.c221.0");
}

TEST(DocumentErrors, TheEnsembleThatIsAskedFor) {
    dabspi::encode_options options;
    options.ensembles = {{0xE0, 0x10C9}};
    const std::string document = si_document(
        "<services><service><bearer id='dab:1e0.10c1.1a01.0'/></service></services><ensemble id='e0.10c2'/>");
    EXPECT_THAT(
        texts_of(encoded(document, options).errors),
        ElementsAre("a.xml:1:1: serviceInformation: the document says nothing of the ensemble that is asked "
                    "for; choose among: e0.10c1, e0.10c2"));
}

TEST(DocumentErrors, AreAllNamedAtOnceInTheOrderOfTheDocument) {
    EXPECT_THAT(errors_of(pi_document("<schedule version='x'>\n<programme shortId='y'/>\n<z/></schedule>")),
                ElementsAre(HasSubstr(":1:"), HasSubstr(":2:"), HasSubstr(":3:")));
}

}  // namespace

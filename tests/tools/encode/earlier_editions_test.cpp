// Documents of earlier editions, and as broadcasters publish them: converted, each kind said once.

#include "tests/tools/encode/encoding.h"
#include "tools/encode/document_messages.h"
#include "tools/spi/decode.h"
#include "tools/spi/xml_document.h"

namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;

const std::string kEarlierService =
    "<serviceInformation xmlns='http://www.worlddab.org/schemas/epgSI/14' "
    "xmlns:epg='http://www.worlddab.org/schemas/epgDataTypes/14' creationTime='2014-01-19T13:20:32'>"
    "<ensemble id='e1.ce15'><epg:shortName>All</epg:shortName><frequency kHz='225648'/>"
    "<service><serviceID id='e1.ce15.c221.0'/><epg:shortName>One</epg:shortName>"
    "<mediaDescription><epg:multimedia url='one.png' type='logo_colour_square'/></mediaDescription>"
    "<link url='http://one.example/'/><playerId id='7'/></service></ensemble></serviceInformation>";

std::string xml_again(const dabspi::encoded_document& made) {
    return made.objects.empty()
               ? std::string()
               : xml_of(dabspi::spi_object::decode(write_object(made.objects.front().top))).text;
}

std::string earlier_schedule(const std::string& scope, const std::string& programmes) {
    return "<epg xmlns='http://www.example.org/schemas/11/epgSchedule' "
           "xmlns:epg='http://www.example.org/schemas/11/epgDataTypes'><schedule>" +
           scope + programmes + "</schedule></epg>";
}

std::string earlier_programme(const std::string& more = {}) {
    return "<programme><epg:mediumName>News</epg:mediumName><epg:location><epg:time "
           "time='2014-01-19T12:00:00+00:00' duration='PT3H'/>" +
           more + "</epg:location></programme>";
}

TEST(EarlierEditions, NamespacesNamesAndIdentifiersAreTakenAsThoseOfToday) {
    const auto made = encoded(kEarlierService);
    EXPECT_THAT(texts_of(made.errors), IsEmpty());
    EXPECT_THAT(made.converted.counts(),
                ElementsAre(Pair("<link url> as uri", 1u), Pair("<serviceID> as <bearer>", 1u),
                            Pair("creationTime without a time zone as UTC", 1u),
                            Pair("elements in the namespaces of earlier editions", 11u),
                            Pair("identifiers without dab:", 1u)));
    EXPECT_THAT(made.omitted_counts(), ElementsAre(Pair("elements of earlier editions", 1u),
                                                   Pair("elements that have no coding", 1u)));
    const std::string xml = xml_again(made);
    EXPECT_THAT(xml, HasSubstr("<bearer id=\"dab:ce1.ce15.c221.0\""));
    EXPECT_THAT(xml, HasSubstr("<link uri=\"http://one.example/\""));
    EXPECT_THAT(xml, HasSubstr("<shortName>One</shortName>"));
    EXPECT_THAT(xml, HasSubstr("creationTime=\"2014-01-19T13:20:32Z\""));
}

TEST(EarlierEditions, ExtensionsInNamespacesOfTheirOwnAreTakenAsWell) {
    const auto made = encoded(earlier_schedule(
        "<scope><serviceScope id='e1.c181.c2a1.0' playerId='1'/></scope>", earlier_programme()));
    EXPECT_THAT(texts_of(made.errors), IsEmpty());
    EXPECT_THAT(made.omitted_counts(), ElementsAre(Pair("attributes of earlier editions", 1u)));
    EXPECT_THAT(xml_again(made), AllOf(HasSubstr("<serviceScope id=\"dab:ce1.c181.c2a1.0\""),
                                       HasSubstr("<mediumName>News</mediumName>")));
}

TEST(EarlierEditions, LongServicesHaveTheirCountryBehindTheEcc) {
    const auto made = encoded(
        earlier_schedule("<scope><serviceScope id='e1.c181.e1c2a100.0'/></scope>", earlier_programme()));
    EXPECT_THAT(xml_again(made), HasSubstr("dab:ce1.c181.e1c2a100.0"));
}

TEST(EarlierEditions, DescriptionsBesideTheirElementGetIt) {
    const auto made =
        encoded(service_document("<bearer id='dab:0e0.10c1.0a01.0'/><shortDescription>a</shortDescription>"));
    EXPECT_THAT(texts_of(made.errors), IsEmpty());
    EXPECT_THAT(made.converted.counts(),
                ElementsAre(Pair("<shortDescription> in a <mediaDescription> of its own", 1u)));
    EXPECT_THAT(xml_again(made), HasSubstr("<mediaDescription>\n    <shortDescription>a</shortDescription>"));
}

TEST(EarlierEditions, AnIdentifierOfZeroesNamesNoService) {
    const std::string document = earlier_schedule("<scope><serviceScope id='00.0000.0000.0'/></scope>",
                                                  earlier_programme("<epg:bearer id='00.0000.0000.0'/>"));
    const auto made = encoded(document);
    EXPECT_THAT(texts_of(made.errors), IsEmpty());
    EXPECT_THAT(made.omitted_counts(), ElementsAre(Pair("identifiers that name no service", 2u)));
    EXPECT_THAT(texts_of(made.remarks), ElementsAre(HasSubstr("no service is named: receivers keep none")));
    dabspi::encode_options options;
    options.service = dabspi::spi_object::parse_content_id("dab:ce1.ce15.c221.0");
    const auto named = encoded(document, options);
    EXPECT_THAT(texts_of(named.remarks), IsEmpty());
    EXPECT_THAT(named.converted.counts(),
                Contains(Pair("identifiers that name no service as dab:ce1.ce15.c221.0", 2u)));
    EXPECT_THAT(xml_again(named), HasSubstr("<serviceScope id=\"dab:ce1.ce15.c221.0\""));
    const auto unscoped = encoded(earlier_schedule("", earlier_programme()), options);
    EXPECT_THAT(unscoped.converted.counts(), Contains(Pair("schedules of dab:ce1.ce15.c221.0", 1u)));
    EXPECT_THAT(xml_again(unscoped), HasSubstr("<serviceScope id=\"dab:ce1.ce15.c221.0\""));
}

TEST(EarlierEditions, AServiceThatIsNotOnDabCanBeGivenABearer) {
    const std::string document = si_document(
        "<services><service><shortName>One</shortName><bearer id='fm:ce1.c221.09580'/>"
        "</service></services>");
    EXPECT_THAT(texts_of(encoded(document).errors), ElementsAre(HasSubstr("say --service")));
    dabspi::encode_options options;
    options.service = dabspi::spi_object::parse_content_id("dab:ce1.ce15.c221.0");
    const auto made = encoded(document, options);
    EXPECT_THAT(texts_of(made.errors), IsEmpty());
    EXPECT_THAT(xml_again(made), HasSubstr("<bearer id=\"dab:ce1.ce15.c221.0\""));
}

TEST(EarlierEditions, GenresThatHaveNoCodingAreLeftOutAsAWhole) {
    const auto made =
        encoded(programme_document("<genre href='urn:tva:metadata:cs:ContentCS:2011:4.2.1' type='main'/>"
                                   "<genre href='urn:other:1'/><longName>a</longName>"));
    EXPECT_THAT(texts_of(made.errors), IsEmpty());
    EXPECT_THAT(made.omitted_counts(), ElementsAre(Pair("genres that have no coding", 2u)));
    EXPECT_THAT(xml_again(made), Not(HasSubstr("<genre")));
}

TEST(EarlierEditions, EachKindIsSaidOnceAndCounted) {
    std::string links;
    for (int i = 0; i < 50; ++i)
        links += "<link url='http://a/'/>";
    EXPECT_THAT(
        messages_of(encoded(programme_document(links + "<alias/><longName>a</longName>")), "a.xml", false),
        Contains("a.xml: converted: <link url> as uri (50); --verbose lists them"));
    const auto all = messages_of(encoded(programme_document(links)), "a.xml", true);
    EXPECT_EQ(std::count_if(
                  all.begin(), all.end(),
                  [](const std::string& each) { return each.find("is taken as uri") != std::string::npos; }),
              50);
}

TEST(EarlierEditions, WarningsOfAKindAreSaidOnce) {
    const auto made = leniently(programme_document("<oops/><oops/><oops/>"));
    EXPECT_THAT(messages_of(made, "a.xml", false),
                Contains(AllOf(HasSubstr("<oops>"), HasSubstr("left out (3 of this kind)"))));
}

// An object that says nothing any more is worse than none.
TEST(EarlierEditions, AnObjectThatLostItsProgrammesOrServicesIsAnError) {
    EXPECT_THAT(texts_of(leniently("<epg xmlns='" + kNamespace +
                                   "' xmlns:o='urn:o'><schedule><o:programme/>"
                                   "</schedule></epg>")
                             .errors),
                ElementsAre(HasSubstr("no <programme> of 1 could be coded, and nothing is left")));
    EXPECT_THAT(texts_of(leniently("<epg xmlns='" + kNamespace +
                                   "'><schedule><programme><location><time "
                                   "time='tomorrow'/></location></programme></schedule></epg>")
                             .errors),
                ElementsAre(HasSubstr("no <programme> of 1 kept its <time>")));
    EXPECT_THAT(texts_of(leniently(service_document("<bearer id='nothing'/>")).errors), Not(IsEmpty()));
    EXPECT_THAT(texts_of(leniently(si_document("<ensemble id='e0.10c1'><service><bearer "
                                               "id='fm:ce1.c221.09580'/></service></ensemble>"))
                             .errors),
                ElementsAre(HasSubstr("no <service> of 1 could be coded")));
}

}  // namespace

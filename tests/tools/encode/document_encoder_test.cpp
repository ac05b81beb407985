// What objects come of documents; compared with the builder, which shares no code with the encoder.

#include "tests/tools/encode/encoding.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

sb::bytes programme_object(const std::vector<sb::bytes>& parts) {
    return sb::elem(sb::tag::epg, {sb::elem(sb::tag::schedule, {sb::elem(sb::tag::programme, parts)})});
}

sb::bytes service_object(const std::vector<sb::bytes>& parts) {
    std::vector<sb::bytes> ensemble = {sb::attr(0x80, {0xE0, 0x10, 0xC1})};
    ensemble.push_back(sb::elem(sb::tag::service, parts));
    return sb::elem(sb::tag::service_information, {sb::elem(sb::tag::ensemble, ensemble)});
}

sb::bytes bearer(std::uint32_t sid) {
    return sb::elem(sb::tag::service_bearer, {sb::attr(0x80, sb::content_id(0xE0, 0x10C1, sid))});
}

TEST(DocumentEncoder, CodesWhatTheBuilderCodes) {
    sb::programme_data programme;
    programme.name = {"News", "News at Ten", "News & Weather at Ten"};
    programme.start = sb::local_time(sb::mjd(2026, 3, 10), 10, 0, 2);
    programme.duration = 5400;
    programme.short_id = 4711;
    programme.bearers = {{0xE0, 0x10C1, 0x1A01, 0}, {0xE0, 0x10C1, 0xE0D00001, 2}};
    sb::schedule_data schedule;
    schedule.scope = sb::service_id{0xE0, 0x10C1, 0x1A01, 0};
    schedule.scope_start = sb::local_time(sb::mjd(2026, 3, 10), 0, 0, 2);
    schedule.scope_stop = sb::local_time(sb::mjd(2026, 3, 10), 24, 0, 2);
    schedule.programmes = {programme};
    EXPECT_EQ(object_of(pi_document(R"(
<schedule>
  <scope stopTime="2026-03-11T00:00:00+01:00" startTime="2026-03-10T00:00:00+01:00">
    <serviceScope id="dab:1e0.10c1.1a01.0"/>
  </scope>
  <programme shortId="4711">
    <shortName>News</shortName>
    <mediumName>News at Ten</mediumName>
    <longName>News &amp; Weather at Ten</longName>
    <location>
      <time duration="PT1H30M" time=" 2026-03-10T10:00:00+01:00 "/>
      <bearer id="dab:1e0.10c1.1a01.0"/>
      <bearer id="dab:de0.10c1.e0d00001.2"/>
    </location>
  </programme>
</schedule>)")),
              sb::pi_object({schedule}));
}

TEST(DocumentEncoder, AttributesStandInTheOrderOfTheirTags) {
    EXPECT_EQ(object_of(programme_document("<memberOf index='3' id='x'/>")),
              programme_object({sb::elem(sb::tag::member_of,
                                         {sb::attr(0x80, sb::str("x")), sb::attr(0x82, sb::u16(3))})}));
}

TEST(DocumentEncoder, BothNamespacesAndAnyPrefixMeanTheSame) {
    const sb::bytes object = programme_object({});
    for (const char* edition : {"", "/31", "/34"}) {
        const std::string name = std::string("http://www.worlddab.org/schemas/spi") + edition;
        EXPECT_EQ(object_of("<epg xmlns='" + name + "'><schedule><programme/></schedule></epg>"), object);
        EXPECT_EQ(object_of("<s:epg xmlns:s='" + name + "'><s:schedule><s:programme/></s:schedule></s:epg>"),
                  object);
    }
}

TEST(DocumentEncoder, OtherNamespacesAreLeftOut) {
    const auto made = encoded(programme_document(
        "<x:player xmlns:x='http://example.org'/><player xmlns=''/><link xmlns:y='u' y:z='1' uri='a'/>"));
    EXPECT_THAT(made.omitted_counts(), ElementsAre(Pair("attributes of other namespaces", 1u),
                                                   Pair("elements of other namespaces", 2u)));
    EXPECT_EQ(object_of(made), programme_object({sb::elem(sb::tag::link, {sb::attr(0x80, sb::str("a"))})}));
}

TEST(DocumentEncoder, WhatHasNoCodingIsLeftOutAndCounted) {
    const auto made = encoded(service_document(
        "<bearer id='dab:1e0.10c1.1a01.0' cost='20' offset='2'/><bearer id='fm:ce1.c479.09580' cost='30'/>"
        "<alias>x</alias><genre>Pop</genre>"));
    EXPECT_THAT(made.omitted_counts(),
                ElementsAre(Pair("attributes that have no coding", 2u), Pair("bearers of other domains", 1u),
                            Pair("elements that have no coding", 1u), Pair("texts that have no coding", 1u)));
    EXPECT_THAT(made.errors, IsEmpty());
    EXPECT_EQ(object_of(made), service_object({bearer(0x1A01), sb::elem(sb::tag::genre, sb::bytes())}));
}

TEST(DocumentEncoder, ServiceScopesOfOtherDomainsAreLeftOut) {
    const auto made =
        encoded(pi_document("<schedule><scope><serviceScope id='http://example.org'/></scope></schedule>"));
    EXPECT_THAT(made.omitted_counts(), ElementsAre(Pair("service scopes of other domains", 1u)));
}

TEST(DocumentEncoder, BearersStandBeforeTheFirstMedia) {
    EXPECT_EQ(object_of(service_document(
                  "<shortName>One</shortName><mediaDescription/><genre/><bearer id='dab:1e0.10c1.1a01.0'/>"
                  "<mediaDescription/><bearer id='dab:1e0.10c1.1a02.0'/>")),
              service_object({sb::elem(sb::tag::short_name, {sb::text("One")}), bearer(0x1A01),
                              bearer(0x1A02), sb::elem(sb::tag::media_description, sb::bytes()),
                              sb::elem(sb::tag::genre, sb::bytes()),
                              sb::elem(sb::tag::media_description, sb::bytes())}));
}

TEST(DocumentEncoder, TheTopElementsLanguageIsTheDefaultLanguage) {
    EXPECT_EQ(object_of("<serviceInformation xml:lang='en' version='7' xmlns='" + kNamespace +
                        "'><ensemble id='e0.10c1'/></serviceInformation>"),
              sb::elem(sb::tag::service_information,
                       {sb::attr(0x80, sb::u16(7)), sb::elem(sb::tag::default_language, sb::str("en")),
                        sb::elem(sb::tag::ensemble, {sb::attr(0x80, {0xE0, 0x10, 0xC1})})}));
}

TEST(DocumentEncoder, LineEndsAroundATextBelongToTheFile) {
    const auto name = [](const std::string& text) {
        return programme_object({sb::elem(sb::tag::long_name, {sb::text(text)})});
    };
    EXPECT_EQ(object_of(programme_document("<longName>\n   One\n Two\n  </longName>")), name("One\n Two"));
    EXPECT_EQ(object_of(programme_document("<longName> One </longName>")), name(" One "));
    EXPECT_EQ(object_of(programme_document("<longName xml:space='preserve'>\nOne\n</longName>")),
              name("\nOne\n"));
    EXPECT_EQ(object_of(programme_document("<longName>One<![CDATA[ & ]]>Two<!-- no --> 3</longName>")),
              name("One & Two 3"));
}

TEST(DocumentEncoder, AnEmptyTextHasNoElement) {
    EXPECT_EQ(object_of(programme_document("<longName>\n</longName>")),
              programme_object({sb::elem(sb::tag::long_name, sb::bytes())}));
}

TEST(DocumentEncoder, LengthsHaveTheirShortestForm) {
    for (const std::size_t size : {249u, 250u, 251u, 252u, 253u, 254u, 255u, 65533u, 65536u}) {
        const std::string text(size, 'a');
        EXPECT_EQ(object_of(programme_document("<link uri='" + text + "'/>")),
                  programme_object({sb::elem(sb::tag::link, {sb::attr(0x80, sb::str(text))})}))
            << size;
    }
}

TEST(DocumentEncoder, ServicesGiveAnObjectForEachEnsembleInTheirOrder) {
    const auto made = encoded(si_document(R"(<services>
  <serviceProvider><shortName>P</shortName></serviceProvider>
  <service><shortName>A</shortName><bearer id="dab:1e0.10c2.1a01.0"/><bearer id="dab:1e0.10c1.1a01.0"/></service>
  <service><shortName>B</shortName><bearer id="dab:1e0.10c1.1a02.0"/></service>
  <service><shortName>C</shortName><bearer id="http://example.org/c"/></service>
  <service><shortName>D</shortName></service>
</services>)"));
    ASSERT_EQ(made.objects.size(), 2u) << testing::PrintToString(texts_of(made.errors));
    const auto service = [](const char* name, std::uint16_t eid, std::uint32_t sid) {
        return sb::elem(sb::tag::service, {sb::elem(sb::tag::short_name, {sb::text(name)}),
                                           sb::elem(sb::tag::service_bearer,
                                                    {sb::attr(0x80, sb::content_id(0xE0, eid, sid))})});
    };
    EXPECT_EQ(write_object(made.objects[0].top),
              sb::elem(sb::tag::service_information,
                       {sb::elem(sb::tag::ensemble,
                                 {sb::attr(0x80, {0xE0, 0x10, 0xC2}), service("A", 0x10C2, 0x1A01)})}));
    EXPECT_EQ(write_object(made.objects[1].top),
              sb::elem(sb::tag::service_information,
                       {sb::elem(sb::tag::ensemble,
                                 {sb::attr(0x80, {0xE0, 0x10, 0xC1}), service("A", 0x10C1, 0x1A01),
                                  service("B", 0x10C1, 0x1A02)})}));
    EXPECT_THAT(made.omitted_counts(),
                ElementsAre(Pair("bearers of other domains", 1u), Pair("elements that have no coding", 1u),
                            Pair("services without a bearer of the DAB domain", 2u)));
}

TEST(DocumentEncoder, OneEnsembleOfSeveralCanBeChosen) {
    dabspi::encode_options options;
    options.ensembles = {{0xE0, 0x10C2}};
    const auto of_services =
        encoded(si_document("<services><service><bearer id='dab:1e0.10c1.1a01.0'/><bearer "
                            "id='dab:1e0.10c2.1a01.0'/></service>"
                            "</services>"),
                options);
    ASSERT_EQ(of_services.objects.size(), 1u);
    EXPECT_EQ(of_services.objects[0].ensemble->eid, 0x10C2);
    EXPECT_EQ(object_of(encoded(si_document("<ensemble id='e0.10c1'/><ensemble id='e0.10c2'/>"), options)),
              sb::elem(sb::tag::service_information,
                       {sb::elem(sb::tag::ensemble, {sb::attr(0x80, {0xE0, 0x10, 0xC2})})}));
}

TEST(DocumentEncoder, EnsemblesAsTheyAreWrittenGiveOneObject) {
    EXPECT_EQ(encoded(si_document("<ensemble id='e0.10c1'/><ensemble id='e0.10c2'/>")).objects.size(), 1u);
}

}  // namespace

// Well-formed objects: every element and attribute has its name, place and value.
#include "tests/tools/spi/decoded.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(DecodeObject, TellsPlacesAndLengths) {
    const so::object read = so::decode(sb::elem(0x02, {sb::elem_fe(0x21, sb::attr(0x80, sb::u16(7)))}));
    EXPECT_EQ(read.kind, so::object_kind::programme_information);
    EXPECT_EQ(read.size, 10U);
    EXPECT_TRUE(read.well_formed());
    const so::node& schedule = node_at(read, "epg/schedule");
    EXPECT_EQ(schedule.offset, 2U);
    EXPECT_EQ(schedule.header, 4U);
    EXPECT_EQ(schedule.length, 4U);
    const so::node& version = node_at(read, "epg/schedule/@version");
    EXPECT_EQ(version.offset, 6U);
    EXPECT_EQ(version.content(), 8U);
    EXPECT_EQ(version.end(), 10U);
    EXPECT_EQ(so::value_text(version), "7");
}

TEST(DecodeObject, ReadsAProgramme) {
    sb::schedule_data schedule;
    schedule.scope = sb::service_id{0xE0, 0x10C1, 0x1A01, 0};
    schedule.scope_start = sb::utc_time{sb::mjd(2026, 3, 10), 0, 0, 2};
    sb::programme_data programme;
    programme.name = {"Short", "Medium", "Long"};
    programme.start = {sb::mjd(2026, 3, 10), 6, 0, 2};
    programme.duration = 5400;
    programme.short_id = 0x010203;
    programme.bearers = {{0xE0, 0x10C1, 0xE0D00001, 2}};
    schedule.programmes = {programme};
    const so::object read = so::decode(sb::pi_object({schedule}));
    EXPECT_THAT(codes_of(read), IsEmpty());
    const std::string in = "epg/schedule/programme/";
    EXPECT_EQ(so::value_text(node_at(read, "epg/schedule/scope/@startTime")), "2026-03-10T01:00:00+01:00");
    EXPECT_EQ(so::value_text(node_at(read, "epg/schedule/scope/serviceScope/@id")), "dab:1e0.10c1.1a01.0");
    EXPECT_EQ(so::value_text(node_at(read, in + "@shortId")), "66051");
    EXPECT_EQ(so::value_text(node_at(read, in + "mediumName/text")), "Medium");
    EXPECT_EQ(so::value_text(node_at(read, in + "location/time/@time")), "2026-03-10T07:00:00+01:00");
    EXPECT_EQ(so::value_text(node_at(read, in + "location/time/@duration")), "PT1H30M");
    EXPECT_EQ(so::value_text(node_at(read, in + "location/bearer/@id")), "dab:de0.10c1.e0d00001.2");
}

TEST(DecodeObject, ReadsAService) {
    sb::service_data service;
    service.name = {"Orb", "Orbitale", ""};
    service.bearers = {{0xE0, 0x10C1, 0x1A01, 0}};
    service.logos = {{"image/png", "a.png", 4, 320, 240}};
    const so::object read = so::decode(sb::si_object(0xE0, 0x10C1, {service}));
    EXPECT_THAT(codes_of(read), IsEmpty());
    EXPECT_EQ(read.kind, so::object_kind::service_information);
    const std::string media = "serviceInformation/ensemble/service/mediaDescription/multimedia/";
    EXPECT_EQ(so::value_text(node_at(read, "serviceInformation/ensemble/@id")), "e0.10c1");
    EXPECT_EQ(so::value_text(node_at(read, media + "@type")), "logo_colour_square");
    EXPECT_EQ(so::value_text(node_at(read, media + "@width")), "320");
}

TEST(DecodeObject, ReadsPlacesWithAndWithoutATextElementAroundThem) {
    const sb::bytes position = {0x48, 0x42, 0x72, 0xFE, 0x3D, 0x53};
    const so::object read = so::decode(around_service(
        sb::elem(sb::tag::geolocation,
                 {sb::elem(sb::tag::country, {sb::text("GB")}), sb::elem(sb::tag::point, position),
                  sb::elem(sb::tag::polygon, {sb::elem(sb::tag::text, sb::join({position, position}))})})));
    EXPECT_THAT(codes_of(read), IsEmpty());
    const std::string in = "serviceInformation/ensemble/service/geolocation/";
    EXPECT_EQ(so::value_text(node_at(read, in + "country/text")), "GB");
    EXPECT_EQ(so::value_text(node_at(read, in + "point")), "51.473935 -2.508109");
    EXPECT_EQ(so::value_text(node_at(read, in + "polygon/text")), "51.473935 -2.508109 51.473935 -2.508109");
}

TEST(DecodeObject, ReadsDefaults) {
    const so::object read = so::decode(sb::elem(0x02, {sb::elem(0x05, sb::content_id(0xE0, 0x10C1, 0x1A01)),
                                                       sb::elem(0x06, sb::str("en")), sb::elem(0x21, {})}));
    EXPECT_THAT(codes_of(read), IsEmpty());
    EXPECT_EQ(so::value_text(node_at(read, "epg/defaultContentID")), "dab:1e0.10c1.1a01.0");
    EXPECT_EQ(so::value_text(node_at(read, "epg/defaultLanguage")), "en");
}

TEST(DecodeObject, GroupsAloneAreGroupInformation) {
    const sb::bytes object = sb::elem(0x02, {sb::elem(0x20, {sb::elem(0x23, sb::attr(0x83, sb::u8(2)))})});
    EXPECT_EQ(so::decode(object).kind, so::object_kind::group_information);
    so::decode_options options;
    options.content_subtype = std::uint16_t{2};
    EXPECT_THAT(codes_of(so::decode(object, options)), ElementsAre("subtype-not-read@0"));
}

TEST(DecodeObject, EveryElementAndAttributeOfTheSchemaIsKnownInItsPlace) {
    for (const so::element_entry& element : so::all_elements()) {
        if (element.parents.empty()) continue;
        sb::bytes inside;
        for (const so::attribute_entry& attribute : element.attributes)
            inside = sb::join({inside, sb::attr(attribute.tag, {})});
        sb::bytes object = sb::elem(element.tag, inside);
        for (const so::element_entry* outer = &element; !outer->parents.empty();) {
            outer = so::find_element(outer->parents.front());
            object = sb::elem(outer->tag, object);
        }
        const so::object read = so::decode(object);
        std::size_t known = 0;
        so::visit(read, [&](const so::node& each, const std::vector<const so::node*>&) {
            known += each.name() != nullptr;
        });
        EXPECT_GE(known, 1 + element.attributes.size()) << element.name;
        for (const std::string& code : codes_of(read)) {
            EXPECT_THAT(code, testing::Not(testing::StartsWith("unknown-tag"))) << element.name;
            EXPECT_THAT(code, testing::Not(testing::StartsWith("misplaced"))) << element.name;
        }
    }
}

}  // namespace

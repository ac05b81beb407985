#include "tools/spi/schema.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

namespace so = dabspi::spi_object;

namespace {

TEST(SpiSchema, NamesEachTag) {
    namespace t = spi::tag;
    const std::pair<std::uint8_t, const char*> names[] = {{t::epg, "epg"},
                                                          {t::service_information, "serviceInformation"},
                                                          {t::short_name, "shortName"},
                                                          {t::medium_name, "mediumName"},
                                                          {t::long_name, "longName"},
                                                          {t::media_description, "mediaDescription"},
                                                          {t::genre, "genre"},
                                                          {t::keywords, "keywords"},
                                                          {t::member_of, "memberOf"},
                                                          {t::link, "link"},
                                                          {t::location, "location"},
                                                          {t::short_description, "shortDescription"},
                                                          {t::long_description, "longDescription"},
                                                          {t::programme, "programme"},
                                                          {t::programme_groups, "programmeGroups"},
                                                          {t::schedule, "schedule"},
                                                          {t::programme_group, "programmeGroup"},
                                                          {t::scope, "scope"},
                                                          {t::service_scope, "serviceScope"},
                                                          {t::ensemble, "ensemble"},
                                                          {t::service, "service"},
                                                          {t::service_bearer, "bearer"},
                                                          {t::multimedia, "multimedia"},
                                                          {t::time, "time"},
                                                          {t::bearer, "bearer"},
                                                          {t::programme_event, "programmeEvent"},
                                                          {t::relative_time, "relativeTime"},
                                                          {t::radiodns, "radiodns"},
                                                          {t::geolocation, "geolocation"},
                                                          {t::country, "country"},
                                                          {t::point, "point"},
                                                          {t::polygon, "polygon"},
                                                          {t::on_demand, "onDemand"},
                                                          {t::presentation_time, "presentationTime"},
                                                          {t::acquisition_time, "acquisitionTime"}};
    for (const auto& [number, name] : names) {
        const so::element_entry* const entry = so::find_element(number);
        ASSERT_NE(entry, nullptr) << name;
        EXPECT_STREQ(entry->name, name);
    }
    EXPECT_EQ(so::all_elements().size(), std::size(names) + 4);  // the four that XML says otherwise
}

TEST(SpiSchema, TagsOccurOnceAndAttributesOnceInTheirElement) {
    std::set<int> tags;
    for (const so::element_entry& element : so::all_elements()) {
        EXPECT_TRUE(tags.insert(element.tag).second) << element.name;
        EXPECT_LT(element.tag, so::tag::first_attribute);
        std::set<int> attributes;
        std::set<std::string> names;
        for (const so::attribute_entry& attribute : element.attributes) {
            EXPECT_GE(attribute.tag, so::tag::first_attribute);
            EXPECT_TRUE(attributes.insert(attribute.tag).second) << element.name << " " << attribute.name;
            EXPECT_TRUE(names.insert(attribute.name).second) << element.name << " " << attribute.name;
            EXPECT_EQ(attribute.names.empty(), attribute.type != so::value_type::enumeration);
        }
    }
}

TEST(SpiSchema, EveryParentIsAnElement) {
    for (const so::element_entry& element : so::all_elements())
        for (const std::uint8_t parent : element.parents)
            EXPECT_NE(so::find_element(parent), nullptr) << element.name;
}

TEST(SpiSchema, BearersOfServicesAndOfLocationsHaveOneNameInXml) {
    EXPECT_EQ(so::find_child(so::tag::service, "bearer")->tag, 0x29);
    EXPECT_EQ(so::find_child(so::tag::location, "bearer")->tag, 0x2D);
    EXPECT_EQ(so::find_child(so::tag::schedule, "bearer"), nullptr);
}

TEST(SpiSchema, NoXmlElementStandsForTextTokensAndDefaults) {
    EXPECT_EQ(so::find_child(so::tag::short_name, "text"), nullptr);
    for (const char* name : {"tokenTable", "defaultContentID", "defaultLanguage"})
        EXPECT_EQ(so::find_child(so::tag::epg, name), nullptr);
    EXPECT_EQ(so::find_child(0, "epg")->tag, so::tag::epg);
}

TEST(SpiSchema, AttributesMeanSomethingElseInEachElement) {
    EXPECT_EQ(so::find_attribute(*so::find_element(so::tag::scope), 0x80)->type, so::value_type::time);
    EXPECT_EQ(so::find_attribute(*so::find_element(so::tag::bearer), 0x80)->type, so::value_type::content_id);
    EXPECT_EQ(so::find_attribute(*so::find_element(so::tag::bearer), 0x81), nullptr);
    EXPECT_EQ(so::find_attribute(*so::find_element(so::tag::multimedia), "height")->tag, 0x85);
}

TEST(SpiSchema, EnumerationsHaveNames) {
    const so::attribute_entry& type = *so::find_attribute(*so::find_element(so::tag::multimedia), "type");
    EXPECT_STREQ(so::enum_text(type, 4), "logo_colour_square");
    EXPECT_EQ(so::enum_text(type, 3), nullptr);
    EXPECT_EQ(so::find_enum(type, "logo_unrestricted")->code, 2);
    EXPECT_EQ(so::find_enum(type, "logo"), nullptr);
}

TEST(SpiSchema, TheReceiverReadsLogosOfServicesOnly) {
    EXPECT_TRUE(so::receiver_reads(so::tag::service, so::tag::media_description));
    EXPECT_FALSE(so::receiver_reads(so::tag::programme, so::tag::media_description));
    EXPECT_FALSE(so::receiver_reads(so::tag::programme, so::tag::short_name));
    EXPECT_TRUE(so::receiver_reads(so::tag::service, so::tag::short_name));
}

}  // namespace

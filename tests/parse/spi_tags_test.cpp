// Each tag's number, as ETSI TS 102 371 has it.
#include "src/parse/reader/spi_tags.h"

#include <gtest/gtest.h>

namespace {

TEST(SpiTags, OfElements) {
    EXPECT_EQ(spi::tag::text, 0x01);
    EXPECT_EQ(spi::tag::epg, 0x02);
    EXPECT_EQ(spi::tag::service_information, 0x03);
    EXPECT_EQ(spi::tag::token_table, 0x04);
    EXPECT_EQ(spi::tag::default_content_id, 0x05);
    EXPECT_EQ(spi::tag::short_name, 0x10);
    EXPECT_EQ(spi::tag::medium_name, 0x11);
    EXPECT_EQ(spi::tag::long_name, 0x12);
    EXPECT_EQ(spi::tag::media_description, 0x13);
    EXPECT_EQ(spi::tag::location, 0x19);
    EXPECT_EQ(spi::tag::programme, 0x1C);
    EXPECT_EQ(spi::tag::schedule, 0x21);
    EXPECT_EQ(spi::tag::scope, 0x24);
    EXPECT_EQ(spi::tag::service_scope, 0x25);
    EXPECT_EQ(spi::tag::ensemble, 0x26);
    EXPECT_EQ(spi::tag::service, 0x28);
    EXPECT_EQ(spi::tag::service_bearer, 0x29);
    EXPECT_EQ(spi::tag::multimedia, 0x2B);
    EXPECT_EQ(spi::tag::time, 0x2C);
    EXPECT_EQ(spi::tag::bearer, 0x2D);
}

TEST(SpiTags, OfElementsThatOnlyTheToolsKnow) {
    EXPECT_EQ(spi::tag::default_language, 0x06);
    EXPECT_EQ(spi::tag::genre, 0x14);
    EXPECT_EQ(spi::tag::keywords, 0x16);
    EXPECT_EQ(spi::tag::member_of, 0x17);
    EXPECT_EQ(spi::tag::link, 0x18);
    EXPECT_EQ(spi::tag::short_description, 0x1A);
    EXPECT_EQ(spi::tag::long_description, 0x1B);
    EXPECT_EQ(spi::tag::programme_groups, 0x20);
    EXPECT_EQ(spi::tag::programme_group, 0x23);
    EXPECT_EQ(spi::tag::programme_event, 0x2E);
    EXPECT_EQ(spi::tag::relative_time, 0x2F);
    EXPECT_EQ(spi::tag::radiodns, 0x31);
    EXPECT_EQ(spi::tag::geolocation, 0x32);
    EXPECT_EQ(spi::tag::country, 0x33);
    EXPECT_EQ(spi::tag::point, 0x34);
    EXPECT_EQ(spi::tag::polygon, 0x35);
    EXPECT_EQ(spi::tag::on_demand, 0x36);
    EXPECT_EQ(spi::tag::presentation_time, 0x37);
    EXPECT_EQ(spi::tag::acquisition_time, 0x38);
}

TEST(SpiTags, OfAttributes) {
    EXPECT_EQ(spi::attribute::scope::start_time, 0x80);
    EXPECT_EQ(spi::attribute::scope::stop_time, 0x81);
    EXPECT_EQ(spi::attribute::service_scope::id, 0x80);
    EXPECT_EQ(spi::attribute::programme::short_id, 0x81);
    EXPECT_EQ(spi::attribute::time::time, 0x80);
    EXPECT_EQ(spi::attribute::time::duration, 0x81);
    EXPECT_EQ(spi::attribute::bearer::id, 0x80);
    EXPECT_EQ(spi::attribute::multimedia::mime, 0x80);
    EXPECT_EQ(spi::attribute::multimedia::url, 0x82);
    EXPECT_EQ(spi::attribute::multimedia::type, 0x83);
    EXPECT_EQ(spi::attribute::multimedia::width, 0x84);
    EXPECT_EQ(spi::attribute::multimedia::height, 0x85);
}

}  // namespace

// The builder against the coding of ETSI TS 102 371 itself: bytes written out by hand.
#include "testkit/spi_builder.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "testkit/spi_builder_objects.h"

namespace {

using namespace spi_builder;

bytes head(const bytes& object, std::size_t count) {
    return cut(object, count);
}

TEST(SpiBuilderLength, UpTo253TakesOneByte) {
    EXPECT_EQ(elem(0x12, bytes{}), (bytes{0x12, 0x00}));
    const bytes object = elem(0x12, bytes(253));
    EXPECT_EQ(head(object, 2), (bytes{0x12, 0xFD}));
    EXPECT_EQ(object.size(), 2U + 253);
}

TEST(SpiBuilderLength, From254TakesTwoBytesAfterTheEscape) {
    const bytes object = elem(0x12, bytes(254));
    EXPECT_EQ(head(object, 4), (bytes{0x12, 0xFE, 0x00, 0xFE}));
    EXPECT_EQ(object.size(), 4U + 254);
}

TEST(SpiBuilderLength, TwoBytesReachTo65535) {
    const bytes object = elem(0x12, bytes(65535));
    EXPECT_EQ(head(object, 4), (bytes{0x12, 0xFE, 0xFF, 0xFF}));
    EXPECT_EQ(object.size(), 4U + 65535);
}

TEST(SpiBuilderLength, From65536TakesThreeBytesAfterTheEscape) {
    const bytes object = elem(0x12, bytes(65536));
    EXPECT_EQ(head(object, 5), (bytes{0x12, 0xFF, 0x01, 0x00, 0x00}));
    EXPECT_EQ(object.size(), 5U + 65536);
}

TEST(SpiBuilderLength, BeyondThreeBytesIsRefused) {
    EXPECT_EQ(length(0xFFFFFF), (bytes{0xFF, 0xFF, 0xFF, 0xFF}));
    EXPECT_THROW(length(0x1000000), std::length_error);
    EXPECT_THROW(length_fe(0x10000), std::length_error);
}

TEST(SpiBuilderLength, LongFormsAreWrittenWhereTheyAreAskedFor) {
    EXPECT_EQ(elem_fe(0x10, {0xAA}), (bytes{0x10, 0xFE, 0x00, 0x01, 0xAA}));
    EXPECT_EQ(elem_ff(0x10, {0xAA}), (bytes{0x10, 0xFF, 0x00, 0x00, 0x01, 0xAA}));
    EXPECT_EQ(elem_stating(0x10, 7, {0xAA}), (bytes{0x10, 0x07, 0xAA}));
    EXPECT_EQ(elem_stating(0x10, 300, {0xAA}), (bytes{0x10, 0xFE, 0x01, 0x2C, 0xAA}));
}

TEST(SpiBuilderElement, ChildrenStandOneAfterTheOther) {
    EXPECT_EQ(elem(tag::service, {elem(tag::short_name, {text("R4")}), attr(0x80, u16(0x0102))}),
              (bytes{0x28, 0x0A, 0x10, 0x04, 0x01, 0x02, 'R', '4', 0x80, 0x02, 0x01, 0x02}));
    EXPECT_EQ(elem(tag::service, {}), (bytes{0x28, 0x00}));
}

TEST(SpiBuilderElement, CuttingKeepsTheFirstBytes) {
    EXPECT_EQ(cut({1, 2, 3}, 2), (bytes{1, 2}));
    EXPECT_EQ(cut({1, 2, 3}, 0), bytes{});
    EXPECT_EQ(cut({1, 2, 3}, 9), (bytes{1, 2, 3}));
}

TEST(SpiBuilderNumber, MostSignificantByteComesFirst) {
    EXPECT_EQ(u8(0xAB), (bytes{0xAB}));
    EXPECT_EQ(u16(0xABCD), (bytes{0xAB, 0xCD}));
    EXPECT_EQ(u24(0x0ABCDE), (bytes{0x0A, 0xBC, 0xDE}));
    EXPECT_EQ(u32(0xFEDCBA98), (bytes{0xFE, 0xDC, 0xBA, 0x98}));
}

TEST(SpiBuilderNumber, TooLargeForItsFieldIsRefused) {
    EXPECT_THROW(u8(0x100), std::invalid_argument);
    EXPECT_THROW(u16(0x10000), std::invalid_argument);
    EXPECT_THROW(u24(0x1000000), std::invalid_argument);
    EXPECT_EQ(u32(0xFFFFFFFF).size(), 4U);
}

TEST(SpiBuilderText, BytesAreKeptAsTheyStand) {
    EXPECT_EQ(text("\xC3\xB6\x01"), (bytes{0x01, 0x03, 0xC3, 0xB6, 0x01}));
}

TEST(SpiBuilderTokenTable, EntriesAreCodeLengthAndText) {
    EXPECT_EQ(token_table({{0x01, "News"}, {0x02, ""}, {0x01, "N"}}),
              (bytes{0x04, 0x0B, 0x01, 0x04, 'N', 'e', 'w', 's', 0x02, 0x00, 0x01, 0x01, 'N'}));
}

TEST(SpiBuilderContentId, LargeServiceIdTakesFourBytes) {
    EXPECT_EQ(content_id(0xE1, 0xC185, 0xE1234567), (bytes{0x50, 0xE1, 0xC1, 0x85, 0xE1, 0x23, 0x45, 0x67}));
    EXPECT_EQ(content_id(0xE1, 0xC185, 0x10000), (bytes{0x50, 0xE1, 0xC1, 0x85, 0x00, 0x01, 0x00, 0x00}));
}

TEST(SpiBuilderContentId, SmallServiceIdTakesTwoBytes) {
    EXPECT_EQ(content_id(0xE1, 0xC185, 0xC221, 2), (bytes{0x42, 0xE1, 0xC1, 0x85, 0xC2, 0x21}));
    EXPECT_EQ(content_id(0xE1, 0xC185, 0xFFFF), (bytes{0x40, 0xE1, 0xC1, 0x85, 0xFF, 0xFF}));
}

TEST(SpiBuilderContentId, SmallServiceIdTakesFourBytesOnRequest) {
    EXPECT_EQ(content_id_32(0xE1, 0xC185, 0xC221, 15),
              (bytes{0x5F, 0xE1, 0xC1, 0x85, 0x00, 0x00, 0xC2, 0x21}));
}

TEST(SpiBuilderContentId, ComponentBeyondFourBitsIsRefused) {
    EXPECT_THROW(content_id(0xE1, 0xC185, 0xC221, 16), std::invalid_argument);
}

TEST(SpiBuilderTimePoint, ShortFormHasDayHourAndMinute) {
    EXPECT_EQ(time_point(57754, 22, 30), (bytes{0x38, 0x66, 0x85, 0x9E}));
    EXPECT_EQ(time_point(131071, 31, 63), (bytes{0x7F, 0xFF, 0xC7, 0xFF}));
}

TEST(SpiBuilderTimePoint, OffsetFollowsWithItsSign) {
    EXPECT_EQ(time_point(57754, 22, 30, 2), (bytes{0x38, 0x66, 0x95, 0x9E, 0x02}));
    EXPECT_EQ(time_point(57754, 22, 30, -2), (bytes{0x38, 0x66, 0x95, 0x9E, 0x22}));
    EXPECT_EQ(time_point(57754, 22, 30, 0), (bytes{0x38, 0x66, 0x95, 0x9E, 0x00}));
}

TEST(SpiBuilderTimePoint, SecondsAndMillisecondsStandBeforeTheOffset) {
    EXPECT_EQ(time_point(57754, 22, 30, std::nullopt, utc_fraction{59, 999}),
              (bytes{0x38, 0x66, 0x8D, 0x9E, 0xEF, 0xE7}));
    EXPECT_EQ(time_point(57754, 22, 30, 2, utc_fraction{59, 999}),
              (bytes{0x38, 0x66, 0x9D, 0x9E, 0xEF, 0xE7, 0x02}));
}

TEST(SpiBuilderTimePoint, WhatDoesNotFitIsRefused) {
    EXPECT_THROW(time_point(1U << 17, 0, 0), std::invalid_argument);
    EXPECT_THROW(time_point(57754, 32, 0), std::invalid_argument);
    EXPECT_THROW(time_point(57754, 0, 64), std::invalid_argument);
    EXPECT_THROW(time_point(57754, 0, 0, 32), std::invalid_argument);
    EXPECT_THROW(time_point(57754, 0, 0, std::nullopt, utc_fraction{64, 0}), std::invalid_argument);
}

TEST(SpiBuilderDay, CountsFromTheSeventeenthOfNovember1858) {
    EXPECT_EQ(mjd(1859, 1, 1), 45U);
    EXPECT_EQ(mjd(1970, 1, 1), 40587U);
    EXPECT_EQ(mjd(2000, 2, 29), 51603U);
    EXPECT_EQ(mjd(2000, 3, 1), 51604U);
    EXPECT_EQ(mjd(2017, 1, 1), 57754U);
    EXPECT_EQ(mjd(2100, 3, 1), mjd(2100, 2, 28) + 1);
    EXPECT_THROW(mjd(2026, 13, 1), std::invalid_argument);
}

TEST(SpiBuilderObjects, LocalTimeIsCodedAsUtcWithItsOffset) {
    EXPECT_EQ(time_point(local_time(57754, 23, 30, 2)), time_point(57754, 22, 30, 2));
    EXPECT_EQ(time_point(local_time(57754, 0, 0, 2)), time_point(57753, 23, 0, 2));
    EXPECT_EQ(time_point(local_time(57754, 24, 0, 0)), time_point(57755, 0, 0, 0));
    EXPECT_EQ(time_point(local_time(57754, 23, 30, -3)), time_point(57755, 1, 0, -3));
}

TEST(SpiBuilderObjects, ProgrammeCarriesNameTimeAndBearer) {
    programme_data data;
    data.short_id = 0x010203;
    data.name.medium_name = "Ab";
    data.start = {57754, 22, 30, 2};
    data.duration = 3600;
    data.bearers = {{0xE1, 0xC185, 0xC221}};
    EXPECT_EQ(programme(data), (bytes{0x1C, 0x24,                                         // programme
                                      0x81, 0x03, 0x01, 0x02, 0x03,                       // short id
                                      0x11, 0x04, 0x01, 0x02, 'A',  'b',                  // medium name
                                      0x19, 0x17,                                         // location
                                      0x2C, 0x0B,                                         // time
                                      0x80, 0x05, 0x38, 0x66, 0x95, 0x9E, 0x02,           //   start
                                      0x81, 0x02, 0x0E, 0x10,                             //   duration
                                      0x2D, 0x08,                                         // bearer
                                      0x80, 0x06, 0x40, 0xE1, 0xC1, 0x85, 0xC2, 0x21}));  //   id
}

TEST(SpiBuilderObjects, ScheduleNamesItsServiceInTheScope) {
    schedule_data data;
    data.scope = service_id{0xE1, 0xC185, 0xC221};
    data.scope_start = utc_time{57754, 22, 30};
    EXPECT_EQ(pi_object({data}, {{0x01, "x"}}), (bytes{0x02, 0x19,                          // epg
                                                       0x04, 0x03, 0x01, 0x01, 'x',         // token table
                                                       0x21, 0x12,                          // schedule
                                                       0x24, 0x10,                          // scope
                                                       0x80, 0x04, 0x38, 0x66, 0x85, 0x9E,  //   start
                                                       0x25, 0x08,                          //   service scope
                                                       0x80, 0x06, 0x40, 0xE1, 0xC1, 0x85, 0xC2, 0x21}));
}

TEST(SpiBuilderObjects, ServiceCarriesNamesBearersAndLogos) {
    logo_data logo;
    logo.mime = "image/png";
    logo.url = "a.png";
    logo.type = logo_unrestricted;
    logo.width = 320;
    logo.height = 240;
    service_data data;
    data.name.short_name = "S";
    data.bearers = {{0xE1, 0xC185, 0xC221}};
    data.logos = {logo};
    const bytes expected =
        join({bytes{0x28, 0x30,                                                  // service
                    0x10, 0x03, 0x01, 0x01, 'S',                                 // short name
                    0x29, 0x08,                                                  // bearer
                    0x80, 0x06, 0x40, 0xE1, 0xC1, 0x85, 0xC2, 0x21, 0x13, 0x1F,  // media description
                    0x2B, 0x1D,                                                  // multimedia
                    0x80, 0x09},
              str("image/png"), bytes{0x82, 0x05}, str("a.png"),
              bytes{0x83, 0x01, 0x02, 0x84, 0x02, 0x01, 0x40, 0x85, 0x02, 0x00, 0xF0}});
    EXPECT_EQ(service(data), expected);
    EXPECT_EQ(si_object(0xE1, 0xC185, {data}),
              join({bytes{0x03, 0x39, 0x26, 0x37, 0x80, 0x03, 0xE1, 0xC1, 0x85}, expected}));
}

TEST(SpiBuilderObjects, WhatIsEmptyIsLeftOut) {
    EXPECT_EQ(service({}), (bytes{0x28, 0x00}));
    EXPECT_EQ(multimedia({}), (bytes{0x2B, 0x00}));
    EXPECT_EQ(schedule({}), (bytes{0x21, 0x00}));
    EXPECT_EQ(pi_object({}), (bytes{0x02, 0x00}));
}

}  // namespace

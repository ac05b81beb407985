// Headers, parameters and directories, field by field.
#include <gtest/gtest.h>

#include "testkit/carousel/mot_carousel.h"
#include "tools/air/mot/mot_directory.h"
#include "tools/air/mot/object_header.h"

namespace {

namespace kit = carousel_kit;
using namespace dabspi::air;

object_header read_header(const kit::object& of) {
    object_header header;
    const kit::bytes sent = kit::header(of);
    EXPECT_EQ(read_object_header(sent, header), sent.size());
    return header;
}

kit::bytes joined(std::initializer_list<kit::bytes> all) {
    kit::bytes whole;
    for (const kit::bytes& each : all)
        kit::append(whole, each);
    return whole;
}

TEST(MotHeader, TheCoreIsRead) {
    kit::object object;
    object.content_type = 63;
    object.content_subtype = 511;
    object.body_size = 0xFFFFFFF;
    const object_header header = read_header(object);
    EXPECT_EQ(header.content_type, 63);
    EXPECT_EQ(header.content_subtype, 511);
    EXPECT_EQ(header.body_size, 0xFFFFFFFU);
    EXPECT_EQ(header.name, "object");
}

TEST(MotHeader, NamesBecomeUtf8) {
    kit::object object;
    object.name = "\x82t\x82";
    object.name_charset = 0;
    EXPECT_EQ(read_header(object).name, "été");
    EXPECT_EQ(read_header(object).name_charset, 0);
    object.name = "\xE9t\xE9";
    object.name_charset = 4;
    EXPECT_EQ(read_header(object).name, "été");
    object.name = "été";
    object.name_charset = 15;
    EXPECT_EQ(read_header(object).name, "été");
    object.name = "\xE9t";  // not UTF-8
    EXPECT_EQ(read_header(object).name, "ét");
}

TEST(MotHeader, ParametersInAnyLengthFormAreRead) {
    for (const bool long_form : {false, true}) {
        kit::object object;
        object.more_parameters = joined(
            {kit::parameter(0x0A, {7}, long_form), kit::parameter(0x0D, {1, 2, 3, 4}, long_form),
             kit::parameter(0x10, kit::text("image/png"), long_form), kit::parameter(0x11, {1}, long_form),
             kit::parameter(0x25, {0xB8, 0xA4, 0x05, 0xDE}, long_form),
             kit::parameter(0x27, {0xE1, 0xC1, 0x85}, long_form),
             kit::parameter(0x3F, kit::bytes(300, 9), long_form)});
        const object_header header = read_header(object);
        EXPECT_EQ(header.priority, 7);
        EXPECT_EQ(header.unique_body_version, 0x01020304U);
        EXPECT_EQ(header.mime_type, "image/png");
        EXPECT_EQ(header.compression, kGzip);
        ASSERT_TRUE(header.scope_start);
        EXPECT_FALSE(header.scope_start->now);
        EXPECT_EQ(header.scope_start->mjd, 0xB8A405DEU >> 14 & 0x1FFFF);
        EXPECT_EQ(header.scope_start->hour, 23U);
        EXPECT_EQ(header.scope_start->minute, 30U);
        EXPECT_EQ(header.scope_id, (kit::bytes{0xE1, 0xC1, 0x85}));
        EXPECT_EQ(parameters_of(header.parameters).size(), 8U);
        EXPECT_EQ(parameters_of(header.parameters).back().value.size(), 300U);
        EXPECT_FALSE(header.scrambled);
    }
}

TEST(MotHeader, LongTimesHaveSecondsAndAbsentOnesMeanNow) {
    // MJD 61100, 10:20 UTC, 59.999 s
    const std::uint32_t first = 0x80000000U | 61100U << 14 | 1U << 11 | 10U << 6 | 20;
    kit::bytes time;
    kit::append_u16(time, first >> 16);
    kit::append_u16(time, first & 0xFFFF);
    kit::append_u16(time, 59U << 10 | 999);
    const auto read = read_mot_time(time);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->mjd, 61100U);
    EXPECT_EQ(read->hour, 10U);
    EXPECT_EQ(read->minute, 20U);
    EXPECT_EQ(read->second, 59U);
    EXPECT_EQ(read->millisecond, 999U);
    EXPECT_TRUE(read_mot_time(kit::bytes{0, 0, 0, 0})->now);
    EXPECT_FALSE(read_mot_time(kit::bytes{0, 0, 0}));
}

TEST(MotHeader, ExpirationIsAbsoluteOrRelative) {
    kit::object object;
    object.more_parameters = kit::parameter(0x09, {0x45});
    EXPECT_EQ(read_header(object).expires_after, 0x45);
    object.more_parameters = kit::parameter(0x09, {0x80, 0, 0, 0});
    EXPECT_TRUE(read_header(object).expires);
}

TEST(MotHeader, CutAnywhereItIsNone) {
    kit::object object;
    object.more_parameters = joined({kit::parameter(0x23, {}), kit::parameter(0x3F, kit::bytes(200, 1))});
    const kit::bytes whole = kit::header(object);
    object_header header;
    ASSERT_EQ(read_object_header(whole, header), whole.size());
    EXPECT_TRUE(header.scrambled);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const kit::bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_EQ(read_object_header(cut, header), 0U) << size;
    }
}

TEST(MotHeader, AnUpdateReplacesParametersAndKeepsTheRest) {
    kit::object object;
    object.more_parameters = joined({kit::parameter(0x0A, {1}), kit::parameter(0x27, {1, 2, 3})});
    object_header header = read_header(object);
    kit::object update;
    update.content_type = 5;
    update.content_subtype = 0;
    update.name = std::nullopt;
    update.more_parameters = kit::parameter(0x0A, {2});
    const object_header read = read_header(update);
    EXPECT_TRUE(read.is_update());
    apply_update(header, read);
    EXPECT_EQ(header.priority, 2);
    EXPECT_EQ(header.name, "object");
    EXPECT_EQ(parameters_of(header.parameters).size(), 3U);
    EXPECT_EQ(parameters_of(header.parameters).back().id, 0x0A);
}

TEST(MotDirectory, FieldsAndEntriesAreRead) {
    kit::object first;
    kit::object second;
    second.transport_id = 0xFFFE;
    second.name = "second";
    const kit::bytes plain = kit::directory({first, second}, {0x123456, 0x1FFF, kit::parameter(0, {})});
    mot_directory read;
    ASSERT_TRUE(read_directory(plain, 100, read));
    EXPECT_EQ(read.objects, 2);
    EXPECT_EQ(read.period_tenths, 0x123456U);
    EXPECT_EQ(read.segment_size, 0x1FFF);
    EXPECT_EQ(parameters_of(read.parameters).size(), 1U);
    ASSERT_EQ(read.entries.size(), 2U);
    EXPECT_EQ(read.entries[1].transport_id, 0xFFFE);
    EXPECT_EQ(read.entries[1].header.name, "second");
    ASSERT_TRUE(read_directory(plain, 1, read));
    EXPECT_TRUE(read.cut);
    EXPECT_EQ(read.entries.size(), 1U);
}

TEST(MotDirectory, TheEmptyDirectoryFromTheAir) {
    const kit::bytes plain = {0, 0, 0, 16, 0, 0, 0, 0, 240, 0, 0, 0, 3, 0x00, 0x41, 0x01};
    mot_directory read;
    ASSERT_TRUE(read_directory(plain, 100, read));
    EXPECT_EQ(read.objects, 0);
    EXPECT_EQ(read.period_tenths, 240U);
    ASSERT_EQ(parameters_of(read.parameters).size(), 2U);
    EXPECT_EQ(parameters_of(read.parameters)[1].value[0], 1);
}

TEST(MotDirectory, CutAnywhereItIsNone) {
    const kit::bytes plain = kit::directory({kit::object(), kit::object()});
    const kit::bytes packed = kit::compressed_directory(plain);
    mot_directory read;
    compressed_directory read_packed;
    ASSERT_TRUE(read_compressed_directory(packed, read_packed));
    EXPECT_EQ(read_packed.plain_size, plain.size());
    for (std::size_t size = 0; size < plain.size(); ++size)
        EXPECT_FALSE(read_directory(byte_view(plain).part(0, size), 100, read)) << size;
    for (std::size_t size = 0; size < packed.size(); ++size)
        EXPECT_FALSE(read_compressed_directory(byte_view(packed).part(0, size), read_packed)) << size;
}

}  // namespace

// Times as coded: day, hour and minute, the long form, the local time offset.
#include "src/parse/spi_time_point.h"

#include <gtest/gtest.h>

#include "tests/parse/reading.h"

namespace {

using namespace spi_builder;
using spi::SpiTimePoint;

constexpr std::uint8_t kLongForm = 0x08;
constexpr std::uint8_t kOffset = 0x10;

// The time in an attribute of exactly these bytes, with others behind it that must not be read.
SpiTimePoint read(const bytes& coded) {
    element_of attribute(join({attr(0x80, coded), bytes(8, 0x11)}));
    SpiTimePoint point;
    EXPECT_EQ(point.parse(attribute), 0);
    return point;
}

// 22:30 UTC on 2017-01-01, with `flags` in the third byte.
bytes half_past_ten(std::uint8_t flags, const bytes& more) {
    return join({bytes{0x38, 0x66, static_cast<std::uint8_t>(0x85 | flags), 0x9E}, more});
}

TEST(SpiTimePoint, NewOneIsZero) {
    const SpiTimePoint point;
    EXPECT_EQ(point.mjd, 0U);
    EXPECT_EQ(point.hour, 0);
    EXPECT_EQ(point.minute, 0);
    EXPECT_EQ(point.second, 0);
    EXPECT_EQ(point.lto, 0);
}

TEST(SpiTimePoint, ReadsDayHourAndMinute) {
    const SpiTimePoint point = read({0x38, 0x66, 0x85, 0x9E});
    EXPECT_EQ(point.mjd, 57754U);
    EXPECT_EQ(point.hour, 22);
    EXPECT_EQ(point.minute, 30);
    EXPECT_EQ(point.second, 0);
    EXPECT_EQ(point.lto, 0);
}

TEST(SpiTimePoint, EveryBitOfTheFieldsCounts) {
    for (const std::uint32_t day : {1U, 2U, 4U, 1023U, 1024U, 65536U, 131071U})
        EXPECT_EQ(read(time_point(day, 0, 0)).mjd, day);
    for (unsigned hour = 0; hour < 32; ++hour)
        EXPECT_EQ(read(time_point(57754, hour, 0)).hour, hour);
    for (unsigned minute = 0; minute < 64; ++minute)
        EXPECT_EQ(read(time_point(57754, 0, minute)).minute, minute);
}

TEST(SpiTimePoint, TopBitIsNotPartOfTheDay) {
    EXPECT_EQ(read({0xB8, 0x66, 0x85, 0x9E}).mjd, 57754U);
}

TEST(SpiTimePoint, ReservedBitOfTheThirdByteIsIgnored) {
    const SpiTimePoint point = read({0x38, 0x66, 0x85 | 0x20, 0x9E});
    EXPECT_EQ(point.mjd, 57754U);
    EXPECT_EQ(point.hour, 22);
    EXPECT_EQ(point.lto, 0);
}

TEST(SpiTimePoint, LongFormHasSeconds) {
    for (const unsigned second : {0U, 1U, 30U, 59U, 62U})
        EXPECT_EQ(read(time_point(57754, 22, 30, std::nullopt, utc_fraction{second, 999})).second, second);
}

TEST(SpiTimePoint, SecondsOf63ReadAsZero) {
    EXPECT_EQ(read(half_past_ten(kLongForm, {0xFF, 0xFF})).second, 0);
}

TEST(SpiTimePoint, MissingSecondsReadAsZero) {
    element_of attribute(attr(0x80, half_past_ten(kLongForm, {})));
    SpiTimePoint point;
    point.second = 17;
    point.parse(attribute);
    EXPECT_EQ(point.second, 0);
}

TEST(SpiTimePoint, MissingMillisecondsAreNotMissed) {
    EXPECT_EQ(read(half_past_ten(kLongForm, {30 << 2})).second, 30);
}

TEST(SpiTimePoint, OffsetCountsHalfHours) {
    EXPECT_EQ(read(time_point(57754, 22, 30, 2)).lto, 2);
    EXPECT_EQ(read(time_point(57754, 22, 30, 0)).lto, 0);
    EXPECT_EQ(read(time_point(57754, 22, 30, 30)).lto, 30);
}

TEST(SpiTimePoint, OffsetFollowsTheSecondsAndTheMilliseconds) {
    const SpiTimePoint point = read(half_past_ten(kLongForm | kOffset, {59 << 2, 0x03, 0x04}));
    EXPECT_EQ(point.second, 59);
    EXPECT_EQ(point.lto, 4);
}

TEST(SpiTimePoint, NegativeOffsetComesOutOneHalfHourLarger) {
    EXPECT_EQ(read(half_past_ten(kOffset, {0x22})).lto, -3);
    EXPECT_EQ(read(half_past_ten(kOffset, {0x20})).lto, -1);
    EXPECT_EQ(read(time_point(57754, 22, 30, -12)).lto, -13);
}

TEST(SpiTimePoint, OffsetIsTakenModulo31OverTheWholeByte) {
    EXPECT_EQ(read(half_past_ten(kOffset, {31})).lto, 0);
    EXPECT_EQ(read(half_past_ten(kOffset, {0x3E})).lto, 0);          // 62
    EXPECT_EQ(read(half_past_ten(kOffset, {0x40})).lto, 2);          // 64, a reserved bit
    EXPECT_EQ(read(half_past_ten(kOffset, {0x80 | 0x02})).lto, 6);   // 130
    EXPECT_EQ(read(half_past_ten(kOffset, {0xA0 | 0x02})).lto, -7);  // 162
    for (unsigned coded = 0; coded < 256; ++coded) {
        const int magnitude = static_cast<int>(coded % 31);
        EXPECT_EQ(read(half_past_ten(kOffset, u8(coded))).lto, (coded & 0x20) != 0 ? -magnitude : magnitude);
    }
}

TEST(SpiTimePoint, MissingOffsetReadsMinusSeven) {
    EXPECT_EQ(read(half_past_ten(kOffset, {})).lto, -7);
    EXPECT_EQ(read(half_past_ten(kOffset | kLongForm, {})).lto, -7);
    EXPECT_EQ(read(half_past_ten(kOffset | kLongForm, {59 << 2})).lto, -7);
    EXPECT_EQ(read(half_past_ten(kOffset | kLongForm, {59 << 2, 0x00})).lto, -7);
}

TEST(SpiTimePoint, FieldsThatAreNotCodedKeepTheirValues) {
    SpiTimePoint point;
    element_of full(attr(0x80, time_point(57754, 22, 30, 2, utc_fraction{59, 0})));
    point.parse(full);
    element_of simple(attr(0x80, time_point(57755, 1, 2)));
    EXPECT_EQ(point.parse(simple), 0);
    EXPECT_EQ(point.mjd, 57755U);
    EXPECT_EQ(point.hour, 1);
    EXPECT_EQ(point.minute, 2);
    EXPECT_EQ(point.second, 59);
    EXPECT_EQ(point.lto, 2);
}

TEST(SpiTimePoint, EmptyAttributeReadsAsAllOnes) {
    const SpiTimePoint point = read(bytes{});
    EXPECT_EQ(point.mjd, 131071U);
    EXPECT_EQ(point.hour, 31);
    EXPECT_EQ(point.minute, 63);
    EXPECT_EQ(point.second, 0);
    EXPECT_EQ(point.lto, -7);
}

TEST(SpiTimePoint, MissingBytesCountAs255) {
    const bytes coded = {0x38, 0x66, 0x85, 0x9E};
    const SpiTimePoint one = read(cut(coded, 1));
    EXPECT_EQ(one.mjd, 0x38U << 10 | 255U << 2 | 3);
    EXPECT_EQ(one.hour, 31);
    EXPECT_EQ(one.lto, -7);
    const SpiTimePoint two = read(cut(coded, 2));
    EXPECT_EQ(two.mjd, 57754U | 3);
    EXPECT_EQ(two.minute, 63);
    const SpiTimePoint three = read(cut(coded, 3));
    EXPECT_EQ(three.mjd, 57754U);
    EXPECT_EQ(three.hour, 0x05 << 2 | 3);
    EXPECT_EQ(three.minute, 63);
    EXPECT_EQ(three.lto, 0);
}

TEST(SpiTimePoint, BytesThatTheBodyDoesNotHoldCountAs255) {
    element_of attribute({0x80, 0x04, 0x38, 0x66, 0x85});
    SpiTimePoint point;
    EXPECT_EQ(point.parse(attribute), 0);
    EXPECT_EQ(point.mjd, 57754U);
    EXPECT_EQ(point.minute, 63);
}

}  // namespace

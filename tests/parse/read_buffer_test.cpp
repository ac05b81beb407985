// The cursor: numbers, tags, lengths, skipping and copying.
#include "src/parse/reader/read_buffer.h"

#include <gtest/gtest.h>

#include "tests/parse/reading.h"
#include "tests/support/captured_stderr.h"

namespace {

using namespace spi_builder;
using spi::ReadBuffer;

constexpr std::uint32_t kAllOnes = 0xFFFFFFFF;

TEST(ReadBuffer, TakesTheArrayOverAndLeavesTheBodyEmpty) {
    spi::MotBody body = body_of({1, 2, 3});
    const unsigned char* array = body.data.get();
    const ReadBuffer buffer(std::move(body));
    EXPECT_EQ(buffer.data.get(), array);
    EXPECT_EQ(buffer.size, 3U);
    EXPECT_EQ(buffer.pos, 0U);
    EXPECT_EQ(body.data, nullptr);  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(body.size, 0U);
}

TEST(ReadBuffer, BodyWithoutAnArrayHasNoBytesWhateverItsSizeSays) {
    spi::MotBody body;
    body.size = 7;
    ReadBuffer buffer(std::move(body));
    EXPECT_EQ(buffer.size, 0U);
    EXPECT_EQ(buffer.ru8(), 255);
}

TEST(ReadBuffer, Ru8TakesOneByte) {
    ReadBuffer buffer = buffer_of({0xAB, 0xCD});
    EXPECT_EQ(buffer.ru8(), 0xAB);
    EXPECT_EQ(buffer.ru8(), 0xCD);
    EXPECT_EQ(buffer.pos, 2U);
}

TEST(ReadBuffer, Ru8PastTheEndIs255AndStays) {
    ReadBuffer buffer = buffer_of({0xAB});
    buffer.pos = 1;
    EXPECT_EQ(buffer.ru8(), 255);
    EXPECT_EQ(buffer.pos, 1U);
}

TEST(ReadBuffer, Ru16IsBigEndian) {
    ReadBuffer buffer = buffer_of({0xAB, 0xCD});
    EXPECT_EQ(buffer.ru16(), 0xABCD);
    EXPECT_EQ(buffer.pos, 2U);
}

TEST(ReadBuffer, Ru16OfOneByteIs65535AndStays) {
    ReadBuffer buffer = buffer_of({0x00, 0xAB});
    buffer.pos = 1;
    EXPECT_EQ(buffer.ru16(), 65535);
    EXPECT_EQ(buffer.pos, 1U);
}

TEST(ReadBuffer, Ru24IsBigEndianAndMovesThreeBytes) {
    ReadBuffer buffer = buffer_of({0xAB, 0xCD, 0xEF, 0x00});
    EXPECT_EQ(buffer.ru24(), 0xABCDEFU);
    EXPECT_EQ(buffer.pos, 3U);
}

TEST(ReadBuffer, Ru24NeedsFourRemainingBytes) {
    ReadBuffer buffer = buffer_of({0xAB, 0xCD, 0xEF});
    EXPECT_EQ(buffer.ru24(), kAllOnes);
    EXPECT_EQ(buffer.pos, 0U);
    ReadBuffer later = buffer_of({0, 0, 0xAB, 0xCD, 0xEF});
    later.pos = 2;
    EXPECT_EQ(later.ru24(), kAllOnes);
    EXPECT_EQ(later.pos, 2U);
}

TEST(ReadBuffer, Ru32IsBigEndian) {
    ReadBuffer buffer = buffer_of({0xFE, 0xDC, 0xBA, 0x98});
    EXPECT_EQ(buffer.ru32(), 0xFEDCBA98U);
    EXPECT_EQ(buffer.pos, 4U);
}

TEST(ReadBuffer, Ru32OfThreeBytesIsAllOnesAndStays) {
    ReadBuffer buffer = buffer_of({0, 1, 2, 3});
    buffer.pos = 1;
    EXPECT_EQ(buffer.ru32(), kAllOnes);
    EXPECT_EQ(buffer.pos, 1U);
}

TEST(ReadBuffer, ReadTagTakesTheByteAndEvalTagLeavesIt) {
    ReadBuffer buffer = buffer_of({0x1C});
    EXPECT_EQ(buffer.eval_tag(), 0x1C);
    EXPECT_EQ(buffer.pos, 0U);
    EXPECT_EQ(buffer.read_tag(), 0x1C);
    EXPECT_EQ(buffer.pos, 1U);
}

TEST(ReadBuffer, TagPastTheEndIs127AndStays) {
    ReadBuffer buffer = buffer_of({0x1C});
    buffer.pos = 1;
    EXPECT_EQ(buffer.eval_tag(), 127);
    EXPECT_EQ(buffer.read_tag(), 127);
    EXPECT_EQ(buffer.pos, 1U);
}

// The position goes wherever closing an element puts it; a sum with it must not wrap either.
TEST(ReadBuffer, EveryReadFailsWhenThePositionLiesFarPastTheEnd) {
    for (const std::uint32_t position : {5U, 0x80000000U, 0xFFFFFFFEU, 0xFFFFFFFFU}) {
        ReadBuffer buffer = buffer_of({1, 2, 3, 4});
        buffer.pos = position;
        EXPECT_EQ(buffer.ru8(), 255);
        EXPECT_EQ(buffer.ru16(), 65535);
        EXPECT_EQ(buffer.ru24(), kAllOnes);
        EXPECT_EQ(buffer.ru32(), kAllOnes);
        EXPECT_EQ(buffer.read_tag(), 127);
        EXPECT_EQ(buffer.eval_tag(), 127);
        EXPECT_EQ(buffer.read_len(), 255U);
        EXPECT_EQ(buffer.skip_len(), 0U);
        EXPECT_EQ(buffer.skip_elem(), 0U);
        EXPECT_EQ(buffer.pos, position);
        EXPECT_FALSE(buffer.in_body());
    }
}

TEST(ReadBufferLength, OneByteReachesTo253) {
    for (const unsigned length : {0U, 1U, 127U, 253U}) {
        ReadBuffer buffer = buffer_of(u8(length));
        EXPECT_EQ(buffer.read_len(), length);
        EXPECT_EQ(buffer.pos, 1U);
    }
}

TEST(ReadBufferLength, TwoBytesFollowTheEscapeFE) {
    ReadBuffer buffer = buffer_of({0xFE, 0x01, 0x00});
    EXPECT_EQ(buffer.read_len(), 256U);
    EXPECT_EQ(buffer.pos, 3U);
}

TEST(ReadBufferLength, ThreeBytesFollowTheEscapeFF) {
    ReadBuffer buffer = buffer_of({0xFF, 0x00, 0x01, 0x00, 0xAA});
    EXPECT_EQ(buffer.read_len(), 256U);
    EXPECT_EQ(buffer.pos, 4U);
}

TEST(ReadBufferLength, MissingLengthByteReadsAs255) {
    ReadBuffer buffer = buffer_of({0x1C});
    buffer.pos = 1;
    EXPECT_EQ(buffer.read_len(), 255U);
    EXPECT_EQ(buffer.pos, 1U);
}

TEST(ReadBufferLength, TwoByteLengthCutShortReads65535AndKeepsTheEscapeConsumed) {
    for (const bytes& coded : {bytes{0xFE}, bytes{0xFE, 0x01}}) {
        ReadBuffer buffer = buffer_of(coded);
        EXPECT_EQ(buffer.read_len(), 65535U);
        EXPECT_EQ(buffer.pos, 1U);
    }
}

TEST(ReadBufferLength, ThreeByteLengthNeedsAByteBehindIt) {
    for (std::size_t following = 0; following <= 3; ++following) {
        ReadBuffer buffer = buffer_of(cut({0xFF, 0x00, 0x01, 0x00}, 1 + following));
        EXPECT_EQ(buffer.read_len(), kAllOnes);
        EXPECT_EQ(buffer.pos, 1U);
    }
}

TEST(ReadBufferSkip, LengthAndContentArePassedOver) {
    ReadBuffer buffer = buffer_of({0x02, 0xAA, 0xBB, 0xCC});
    EXPECT_EQ(buffer.skip_len(), 2U);
    EXPECT_EQ(buffer.pos, 3U);
}

TEST(ReadBufferSkip, ContentThatEndsExactlyAtTheEndIsNotSkipped) {
    ReadBuffer buffer = buffer_of({0x02, 0xAA, 0xBB});
    EXPECT_EQ(buffer.skip_len(), 0U);
    EXPECT_EQ(buffer.pos, 1U);
}

TEST(ReadBufferSkip, ContentThatReachesBeyondTheEndIsNotSkipped) {
    ReadBuffer buffer = buffer_of({0xFE, 0xFF, 0xFF, 0xAA});
    EXPECT_EQ(buffer.skip_len(), 0U);
    EXPECT_EQ(buffer.pos, 3U);
    ReadBuffer unreadable = buffer_of({0xFF, 0x00, 0x00, 0x01});
    EXPECT_EQ(unreadable.skip_len(), 0U);
    EXPECT_EQ(unreadable.pos, 1U);
}

TEST(ReadBufferSkip, WholeElementIsPassedOver) {
    ReadBuffer buffer = buffer_of({0x10, 0x02, 0xAA, 0xBB, 0xCC});
    EXPECT_EQ(buffer.skip_elem(), 2U);
    EXPECT_EQ(buffer.pos, 4U);
}

TEST(ReadBufferSkip, ElementThatEndsExactlyAtTheEndIsNotSkipped) {
    ReadBuffer buffer = buffer_of({0x10, 0x02, 0xAA, 0xBB});
    EXPECT_EQ(buffer.skip_elem(), 0U);
    EXPECT_EQ(buffer.pos, 2U);
}

TEST(ReadBufferSkip, WithoutATagNothingIsSkipped) {
    ReadBuffer empty = buffer_of({});
    EXPECT_EQ(empty.skip_elem(), 0U);
    EXPECT_EQ(empty.pos, 0U);
    ReadBuffer no_tag = buffer_of({0x7F, 0x01, 0xAA, 0xBB});
    EXPECT_EQ(no_tag.skip_elem(), 0U);
    EXPECT_EQ(no_tag.pos, 1U);
}

TEST(ReadBufferFillFrom, CopiesWhatRemainsToTheStart) {
    ReadBuffer target = buffer_of({9, 9, 9, 9});
    target.pos = 3;
    ReadBuffer source = buffer_of({1, 2, 3, 4, 5});
    source.pos = 3;
    EXPECT_EQ(target.fill_from(source), 5U);
    EXPECT_EQ(bytes(target.data.get(), target.data.get() + 4), (bytes{4, 5, 9, 9}));
    EXPECT_EQ(source.pos, 5U);
    EXPECT_EQ(target.pos, 3U);
    EXPECT_EQ(target.size, 4U);
}

TEST(ReadBufferFillFrom, WhatRemainsMayFillTheBufferExactly) {
    ReadBuffer target = buffer_of({9, 9});
    ReadBuffer source = buffer_of({1, 2});
    EXPECT_EQ(target.fill_from(source), 2U);
    EXPECT_EQ(bytes(target.data.get(), target.data.get() + 2), (bytes{1, 2}));
}

TEST(ReadBufferFillFrom, WithoutRoomNothingChanges) {
    ReadBuffer target = buffer_of({9, 9});
    ReadBuffer source = buffer_of({1, 2, 3, 4});
    source.pos = 1;
    EXPECT_EQ(target.fill_from(source), 0U);
    EXPECT_EQ(bytes(target.data.get(), target.data.get() + 2), (bytes{9, 9}));
    EXPECT_EQ(source.pos, 1U);
}

TEST(ReadBufferFillFrom, SourceReadToItsEndOrPastItCountsAsNoBytes) {
    for (const std::uint32_t position : {3U, 4U, 0xFFFFFFFFU}) {
        ReadBuffer target = buffer_of({9});
        ReadBuffer source = buffer_of({1, 2, 3});
        source.pos = position;
        EXPECT_EQ(target.fill_from(source), 3U);
        EXPECT_EQ(target.data[0], 9);
        EXPECT_EQ(source.pos, 3U);
    }
}

TEST(ReadBufferFillFrom, AnEmptyBufferHasRoomForNoBytes) {
    ReadBuffer target = buffer_of({});
    ReadBuffer source = buffer_of({1});
    EXPECT_EQ(target.fill_from(source), 0U);
    EXPECT_EQ(source.pos, 0U);
    source.pos = 1;
    EXPECT_EQ(target.fill_from(source), 1U);
}

TEST(ReadBuffer, FailingReadsWriteNoLogLine) {
    const captured_stderr log;
    ReadBuffer buffer = buffer_of({});
    buffer.ru8();
    buffer.ru16();
    buffer.ru24();
    buffer.ru32();
    buffer.read_tag();
    buffer.read_len();
    EXPECT_EQ(log.text(), "");
}

}  // namespace

// The scope of one element: how it opens, what can be read inside, where it closes.
#include "src/parse/reader/spi_parseable.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/parse/reading.h"

namespace {

using namespace spi_builder;
using spi::ReadBuffer;
using spi::spi_parseable;

TEST(SpiParseable, OpensWithTagLengthAndEnd) {
    ReadBuffer buffer = buffer_of({0x1C, 0x03, 1, 2, 3, 4});
    const spi_parseable element(buffer);
    EXPECT_EQ(element.tag, 0x1C);
    EXPECT_EQ(element.len, 3U);
    EXPECT_EQ(element.end, 5U);
    EXPECT_EQ(&element.buf, &buffer);
    EXPECT_EQ(buffer.pos, 2U);
}

TEST(SpiParseable, ChildOpensJustAsAnElementOfTheBufferDoes) {
    const bytes coded = elem(0x02, {elem(0x21, bytes{7, 8})});
    ReadBuffer buffer = buffer_of(coded);
    spi_parseable parent(buffer);
    spi_parseable child(parent);
    EXPECT_EQ(&child.buf, &buffer);
    EXPECT_EQ(child.tag, 0x21);
    EXPECT_EQ(child.len, 2U);
    EXPECT_EQ(child.end, 6U);

    ReadBuffer other = buffer_of(coded);
    other.pos = 2;
    const spi_parseable direct(other);
    EXPECT_EQ(direct.tag, child.tag);
    EXPECT_EQ(direct.len, child.len);
    EXPECT_EQ(direct.end, child.end);
}

TEST(SpiParseable, LongLengthsCountFromBehindTheLengthBytes) {
    ReadBuffer two = buffer_of(elem_fe(0x1C, bytes(256)));
    const spi_parseable after_fe(two);
    EXPECT_EQ(after_fe.len, 256U);
    EXPECT_EQ(after_fe.end, 4U + 256);
    ReadBuffer three = buffer_of(elem_ff(0x1C, bytes(256)));
    const spi_parseable after_ff(three);
    EXPECT_EQ(after_ff.len, 256U);
    EXPECT_EQ(after_ff.end, 5U + 256);
}

TEST(SpiParseable, LengthThatReachesBeyondTheBodyIsKeptAsStated) {
    ReadBuffer buffer = buffer_of({0x1C, 0xFE, 0xFF, 0xFF, 0xAA});
    const spi_parseable element(buffer);
    EXPECT_EQ(element.len, 65535U);
    EXPECT_EQ(element.end, 4U + 65535);
    EXPECT_EQ(element.content_left(), 1U);
}

TEST(SpiParseable, WithoutATagEndsOneByteFurther) {
    ReadBuffer buffer = buffer_of({0xAA});
    buffer.pos = 1;
    {
        const spi_parseable none(buffer);
        EXPECT_EQ(none.tag, 127);
        EXPECT_EQ(none.len, 0U);
        EXPECT_EQ(none.end, 2U);
    }
    EXPECT_EQ(buffer.pos, 2U);
}

TEST(SpiParseable, TagByte7FEndsRightBehindItself) {
    ReadBuffer buffer = buffer_of({0x7F, 0x02, 0xAA, 0xBB});
    {
        const spi_parseable element(buffer);
        EXPECT_EQ(element.tag, 127);
        EXPECT_EQ(element.len, 0U);
        EXPECT_EQ(element.end, 1U);
        EXPECT_FALSE(element.has_more());
    }
    EXPECT_EQ(buffer.pos, 1U);
}

TEST(SpiParseable, ThreeByteLengthAtTheVeryEndFailsAndTheElementEndsBehindItsTag) {
    ReadBuffer buffer = buffer_of({0x1C, 0xFF, 0x00, 0x01, 0x00});
    {
        const spi_parseable element(buffer);
        EXPECT_EQ(element.tag, 0x1C);
        EXPECT_EQ(element.len, 0xFFFFFFFFU);
        EXPECT_EQ(element.end, 1U);
        EXPECT_FALSE(element.has_more());
        EXPECT_EQ(element.content_left(), 0U);
    }
    EXPECT_EQ(buffer.pos, 1U);
}

TEST(SpiParseable, LengthByteMissingReadsAs255) {
    ReadBuffer buffer = buffer_of({0x1C});
    const spi_parseable element(buffer);
    EXPECT_EQ(element.tag, 0x1C);
    EXPECT_EQ(element.len, 255U);
    EXPECT_EQ(element.end, 1U + 255);
    EXPECT_FALSE(element.has_more());
}

TEST(SpiParseable, TwoByteLengthCutShortReads65535) {
    ReadBuffer buffer = buffer_of({0x1C, 0xFE, 0x01});
    const spi_parseable element(buffer);
    EXPECT_EQ(element.len, 65535U);
    EXPECT_EQ(element.end, 2U + 65535);
}

TEST(SpiParseable, ClosingPassesOverWhatWasNotRead) {
    ReadBuffer buffer = buffer_of({0x1C, 0x03, 1, 2, 3, 4});
    {
        spi_parseable element(buffer);
        element.ru8();
    }
    EXPECT_EQ(buffer.pos, 5U);
}

TEST(SpiParseable, ClosingMovesBackWhenAChildOvershot) {
    ReadBuffer buffer = buffer_of({0x02, 0x02, 0x21, 0x7D, 1, 2, 3});
    {
        spi_parseable parent(buffer);
        { const spi_parseable child(parent); }
        EXPECT_EQ(buffer.pos, 4U + 0x7D);
    }
    EXPECT_EQ(buffer.pos, 4U);
}

TEST(SpiParseable, EndNeverWrapsAround) {
    // Such a position comes of a body near 4 GiB: closing must not lead back to its beginning.
    ReadBuffer buffer = buffer_of({0x1C, 0x00});
    buffer.pos = 0xFFFFFFFF;
    {
        const spi_parseable none(buffer);
        EXPECT_EQ(none.tag, 127);
        EXPECT_EQ(none.end, 0xFFFFFFFFU);
        EXPECT_FALSE(none.has_more());
    }
    EXPECT_EQ(buffer.pos, 0xFFFFFFFFU);
}

TEST(SpiParseable, ClosesWhenAnExceptionPasses) {
    ReadBuffer buffer = buffer_of({0x02, 0x04, 0x21, 0x01, 1, 2, 3});
    try {
        spi_parseable parent(buffer);
        const spi_parseable child(parent);
        throw std::runtime_error("from a handler");
    } catch (const std::runtime_error&) {
    }
    EXPECT_EQ(buffer.pos, 6U);
}

TEST(SpiParseable, EmptyElementHasNothingToRead) {
    ReadBuffer buffer = buffer_of({0x1C, 0x00, 0xAA});
    spi_parseable element(buffer);
    EXPECT_EQ(element.end, 2U);
    EXPECT_FALSE(element.has_more());
    EXPECT_EQ(element.content_left(), 0U);
    EXPECT_EQ(element.ru8(), 255);
    EXPECT_EQ(buffer.pos, 2U);
}

TEST(SpiParseable, ReadsStopAtTheElementsEnd) {
    const bytes coded = {0x80, 0x01, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE};
    element_of eight(coded);
    EXPECT_EQ(eight.scope.ru8(), 0xAA);
    EXPECT_EQ(eight.scope.ru8(), 255);
    EXPECT_EQ(eight.buffer.pos, 3U);
    element_of sixteen(coded);
    EXPECT_EQ(sixteen.scope.ru16(), 65535);
    EXPECT_EQ(sixteen.buffer.pos, 2U);
    element_of thirty_two(coded);
    EXPECT_EQ(thirty_two.scope.ru32(), 0xFFFFFFFFU);
    EXPECT_EQ(thirty_two.buffer.pos, 2U);
}

TEST(SpiParseable, ReadsThatFitExactlySucceed) {
    element_of read({0x80, 0x07, 0xAA, 0xBB, 0xCC, 0x01, 0x02, 0x03, 0x04});
    EXPECT_EQ(read.scope.ru8(), 0xAA);
    EXPECT_EQ(read.scope.ru16(), 0xBBCC);
    EXPECT_EQ(read.scope.ru32(), 0x01020304U);
    EXPECT_EQ(read.scope.content_left(), 0U);
}

TEST(SpiParseable, ReadsStopAtTheBodysEndWhateverTheElementClaims) {
    element_of read({0x80, 0x70, 0xAA});
    EXPECT_EQ(read.scope.content_left(), 1U);
    EXPECT_EQ(read.scope.ru16(), 65535);
    EXPECT_EQ(read.scope.ru32(), 0xFFFFFFFFU);
    EXPECT_EQ(read.scope.ru8(), 0xAA);
    EXPECT_EQ(read.scope.ru8(), 255);
    EXPECT_FALSE(read.scope.has_more());
}

TEST(SpiParseable, NothingIsLeftOnceAChildHasGonePastTheEnd) {
    ReadBuffer buffer = buffer_of({0x02, 0x02, 0x21, 0x04, 1, 2, 3, 4, 5});
    spi_parseable parent(buffer);
    { const spi_parseable child(parent); }
    EXPECT_FALSE(parent.has_more());
    EXPECT_EQ(parent.content_left(), 0U);
    EXPECT_EQ(parent.ru8(), 255);
    EXPECT_EQ(parent.ru16(), 65535);
}

TEST(SpiParseable, PassesOverUnknownElementsOfAnySize) {
    for (const std::size_t size : {0U, 1U, 253U, 254U, 65535U, 65536U}) {
        ReadBuffer buffer = buffer_of(join({elem(0x55, bytes(size, 0x1C)), elem(0x1C, bytes{})}));
        { const spi_parseable unknown(buffer); }
        const spi_parseable known(buffer);
        EXPECT_EQ(known.tag, 0x1C) << size;
        EXPECT_EQ(known.end, buffer.size) << size;
    }
}

}  // namespace

// Strings: bytes as they stand, and with token bytes replaced by their texts.
#include <gtest/gtest.h>

#include "tests/parse/reading.h"

namespace {

using namespace spi_builder;
using spi::ReadBuffer;

TEST(PlainString, IsAppendedAndReturnsItsLength) {
    ReadBuffer buffer = buffer_of(str("News at Ten"));
    std::string out = "The ";
    EXPECT_EQ(buffer.read_string(out, 4), 4U);
    EXPECT_EQ(out, "The News");
    EXPECT_EQ(buffer.pos, 4U);
}

TEST(PlainString, OfNoBytesReadsNothing) {
    ReadBuffer buffer = buffer_of(str("News"));
    std::string out = "kept";
    EXPECT_EQ(buffer.read_string(out, 0), 0U);
    EXPECT_EQ(out, "kept");
    EXPECT_EQ(buffer.pos, 0U);
}

TEST(PlainString, TakesUpTo255Bytes) {
    ReadBuffer buffer = buffer_of(bytes(300, 'x'));
    std::string out;
    EXPECT_EQ(buffer.read_string(out, 255), 255U);
    EXPECT_EQ(out, std::string(255, 'x'));
    EXPECT_EQ(buffer.pos, 255U);
}

TEST(PlainString, OfMoreThan255BytesIsPassedOver) {
    ReadBuffer buffer = buffer_of(bytes(300, 'x'));
    std::string out = "kept";
    EXPECT_EQ(buffer.read_string(out, 256), 256U);
    EXPECT_EQ(out, "kept");
    EXPECT_EQ(buffer.pos, 256U);
}

TEST(PlainString, ExpandsNoTokens) {
    ReadBuffer buffer = buffer_of({0x01, 0x00, 0xFF});
    std::string out;
    buffer.read_string(out, 3);
    EXPECT_EQ(out, std::string("\x01\x00\xFF", 3));
}

TEST(PlainString, BeyondTheEndAppendsOnlyBytesThatExistAndMovesAllTheSame) {
    ReadBuffer buffer = buffer_of(str("News"));
    buffer.pos = 2;
    std::string out;
    EXPECT_EQ(buffer.read_string(out, 200), 200U);
    EXPECT_EQ(out, "ws");
    EXPECT_EQ(buffer.pos, 202U);
    EXPECT_EQ(buffer.read_string(out, 5), 5U);
    EXPECT_EQ(out, "ws");
    EXPECT_EQ(buffer.pos, 207U);
}

TEST(TokenString, ReplacesTokensByTheirTexts) {
    const spi::SpiTokenTable table = table_of(token_table({{0x01, "News"}, {0x02, "at"}}));
    ReadBuffer buffer = buffer_of({0x01, ' ', 0x02, ' ', 'T', 'e', 'n', '!'});
    std::string out;
    EXPECT_EQ(buffer.read_string(out, 7, table), 7U);
    EXPECT_EQ(out, "News at Ten");
    EXPECT_EQ(buffer.pos, 7U);
}

TEST(TokenString, AppendsToWhatIsThere) {
    ReadBuffer buffer = buffer_of(str("at Ten"));
    std::string out = "News ";
    buffer.read_string(out, 6, spi::SpiTokenTable());
    EXPECT_EQ(out, "News at Ten");
}

TEST(TokenString, TextOfATokenIsNotExpandedAgain) {
    const spi::SpiTokenTable table = table_of(token_table({{0x01, "a\x02"}, {0x02, "b"}}));
    ReadBuffer buffer = buffer_of({0x01});
    std::string out;
    buffer.read_string(out, 1, table);
    EXPECT_EQ(out, "a\x02");
}

TEST(TokenString, UndefinedTokenVanishes) {
    ReadBuffer buffer = buffer_of({'a', 0x07, 'b'});
    std::string out;
    EXPECT_EQ(buffer.read_string(out, 3, spi::SpiTokenTable()), 3U);
    EXPECT_EQ(out, "ab");
    EXPECT_EQ(buffer.pos, 3U);
}

TEST(TokenString, ExactlySixteenByteValuesAreTokens) {
    bytes all;
    for (unsigned value = 0; value < 256; ++value)
        all.push_back(static_cast<std::uint8_t>(value));
    ReadBuffer buffer = buffer_of(all);
    std::string out;
    buffer.read_string(out, 256, spi::SpiTokenTable());
    std::string literal = std::string("\x00\x09\x0A\x0D", 4);
    for (unsigned value = 0x14; value < 256; ++value)
        literal += static_cast<char>(value);
    EXPECT_EQ(out, literal);
}

// Bytes are looked at several at a time, so where one stands must make no difference, nor what stands beside.
TEST(TokenString, EveryByteIsRecognisedAtEveryPlace) {
    const spi::SpiTokenTable none;
    for (std::size_t length = 1; length <= 20; ++length) {
        for (std::size_t position = 0; position < length; ++position) {
            for (unsigned byte = 0; byte <= 0xFF; ++byte) {
                for (const std::uint8_t beside : bytes{0x00, 0x14, 0x7F, 0x80, 0xFF}) {
                    bytes coded(length, beside);
                    coded[position] = static_cast<std::uint8_t>(byte);
                    std::string expected(coded.begin(), coded.end());
                    if (spi::SpiTokenTable::is_code(coded[position])) expected.erase(position, 1);
                    ReadBuffer buffer = buffer_of(coded);
                    std::string out;
                    buffer.read_string(out, static_cast<std::uint32_t>(length), none);
                    ASSERT_EQ(out, expected) << byte << " at " << position << " of " << length;
                }
            }
        }
    }
}

TEST(TokenString, TabLineFeedAndCarriageReturnStayLiteralEvenWhenTheTableDefinesThem) {
    const spi::SpiTokenTable table =
        table_of(token_table({{0x09, "tab"}, {0x0A, "feed"}, {0x0D, "return"}, {0x14, "no"}}));
    ReadBuffer buffer = buffer_of({0x09, 0x0A, 0x0D, 0x14});
    std::string out;
    buffer.read_string(out, 4, table);
    EXPECT_EQ(out, "\x09\x0A\x0D\x14");
}

TEST(TokenString, MayBeLongerThan255Bytes) {
    ReadBuffer buffer = buffer_of(bytes(70000, 'x'));
    std::string out;
    EXPECT_EQ(buffer.read_string(out, 66000, spi::SpiTokenTable()), 66000U);
    EXPECT_EQ(out.size(), 66000U);
    EXPECT_EQ(buffer.pos, 66000U);
}

TEST(TokenString, BytesAreKeptWithoutConversion) {
    const bytes raw = {0xC3, 0xB6, 0x80, 0xFF, 0x00, 0xED};
    ReadBuffer buffer = buffer_of(raw);
    std::string out;
    buffer.read_string(out, 6, spi::SpiTokenTable());
    EXPECT_EQ(str(out), raw);
}

TEST(TokenString, BeyondTheEndAppendsOnlyBytesThatExistAndMovesAllTheSame) {
    ReadBuffer buffer = buffer_of(str("News"));
    buffer.pos = 1;
    std::string out;
    EXPECT_EQ(buffer.read_string(out, 1000, spi::SpiTokenTable()), 1000U);
    EXPECT_EQ(out, "ews");
    EXPECT_EQ(buffer.pos, 1001U);
}

TEST(TokenString, PositionNeverWrapsAround) {
    ReadBuffer buffer = buffer_of(str("News"));
    std::string out;
    buffer.pos = 0xFFFFFFF0;
    buffer.read_string(out, 0x1000, spi::SpiTokenTable());
    EXPECT_EQ(out, "");
    EXPECT_GE(buffer.pos, 0xFFFFFFF0U);
    buffer.pos = 0xFFFFFFF0;
    buffer.read_string(out, 255);
    EXPECT_EQ(out, "");
    EXPECT_GE(buffer.pos, 0xFFFFFFF0U);
}

}  // namespace

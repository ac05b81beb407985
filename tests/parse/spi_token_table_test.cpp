// The string tokens of one object.
#include "src/parse/reader/spi_token_table.h"

#include <gtest/gtest.h>

#include "tests/parse/reading.h"

namespace {

using namespace spi_builder;
using spi::SpiTokenTable;

TEST(SpiTokenTable, KnowsSixteenCodesFromTheStart) {
    const SpiTokenTable table;
    bytes codes;
    for (unsigned value = 0; value < 256; ++value) {
        if (table.is_code(static_cast<std::uint8_t>(value)))
            codes.push_back(static_cast<std::uint8_t>(value));
    }
    EXPECT_EQ(codes, (bytes{0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08, 0x0B, 0x0C, 0x0E, 0x0F, 0x10,
                            0x11, 0x12, 0x13}));
}

TEST(SpiTokenTable, DefinesNoTextFromTheStart) {
    const SpiTokenTable table;
    for (unsigned value = 0; value < 256; ++value)
        EXPECT_EQ(table.get_token(static_cast<unsigned char>(value)), "");
}

TEST(SpiTokenTable, TakesItsTextsFromTheElement) {
    const SpiTokenTable table = table_of(token_table({{0x01, "News"}, {0x13, " at "}}));
    EXPECT_EQ(table.get_token(0x01), "News");
    EXPECT_EQ(table.get_token(0x13), " at ");
    EXPECT_EQ(table.get_token(0x02), "");
}

TEST(SpiTokenTable, FirstDefinitionOfACodeWins) {
    EXPECT_EQ(table_of(token_table({{0x01, "first"}, {0x01, "second"}})).get_token(0x01), "first");
}

TEST(SpiTokenTable, FirstDefinitionWinsOverSeveralTableElements) {
    SpiTokenTable table = table_of(token_table({{0x01, "first"}}));
    element_of second(token_table({{0x01, "second"}, {0x02, "other"}}));
    table.parse(second);
    EXPECT_EQ(table.get_token(0x01), "first");
    EXPECT_EQ(table.get_token(0x02), "other");
}

TEST(SpiTokenTable, EmptyTextDefinesNothingAndALaterOneDoes) {
    EXPECT_EQ(table_of(token_table({{0x01, ""}, {0x01, "later"}})).get_token(0x01), "later");
}

TEST(SpiTokenTable, AnyTagIsTakenAsACode) {
    const SpiTokenTable table = table_of(token_table({{0x00, "zero"}, {0x09, "tab"}, {0xFF, "high"}}));
    EXPECT_EQ(table.get_token(0x00), "zero");
    EXPECT_EQ(table.get_token(0x09), "tab");
    EXPECT_EQ(table.get_token(0xFF), "high");
}

TEST(SpiTokenTable, EmptyElementDefinesNothing) {
    SpiTokenTable table;
    element_of read(join({elem(tag::token_table, bytes{}), elem(0x01, str("not inside"))}));
    table.parse(read);
    EXPECT_EQ(table.get_token(0x01), "");
    EXPECT_EQ(read.buffer.pos, 2U);
}

TEST(SpiTokenTable, TextsAreNotExpandedThemselves) {
    EXPECT_EQ(table_of(token_table({{0x01, "News"}, {0x02, "\x01!"}})).get_token(0x02), "\x01!");
}

TEST(SpiTokenTable, TextsReachTo255Bytes) {
    const std::string longest(255, 'x');
    EXPECT_EQ(table_of(token_table({{0x01, longest}})).get_token(0x01), longest);
    EXPECT_EQ(table_of(token_table({{0x01, std::string(254, 'x')}})).get_token(0x01), std::string(254, 'x'));
}

TEST(SpiTokenTable, TextLongerThan255BytesDefinesNothingAndIsPassedOver) {
    for (const std::size_t size : {256U, 257U, 511U, 512U, 70000U}) {
        const SpiTokenTable table =
            table_of(token_table({{0x01, std::string(size, 'x')}, {0x02, "next"}, {0x01, "short enough"}}));
        EXPECT_EQ(table.get_token(0x01), "short enough") << size;
        EXPECT_EQ(table.get_token(0x02), "next") << size;
    }
}

TEST(SpiTokenTable, TextThatClaimsMoreThan255BytesDefinesNothingEvenWhenFewerExist) {
    EXPECT_EQ(table_of({0x04, 0x7F, 0x01, 0xFE, 0x01, 0x00, 'N', 'e', 'w', 's'}).get_token(0x01), "");
    EXPECT_EQ(table_of({0x04, 0x7F, 0x01, 0xFE, 0x00, 0xFF, 'N', 'e', 'w', 's'}).get_token(0x01), "News");
}

TEST(SpiTokenTable, CodeWithoutAReadableLengthDefinesNothing) {
    // A three-byte length in the last three bytes of the body, which does not count.
    const SpiTokenTable table = table_of({0x04, 0x05, 0x01, 0xFF, 0x00, 0x00, 0x01});
    EXPECT_EQ(table.get_token(0x01), "");
}

TEST(SpiTokenTable, TextCutShortKeepsTheBytesThatExist) {
    EXPECT_EQ(table_of({0x04, 0x06, 0x01, 0x04, 'N', 'e'}).get_token(0x01), "Ne");
    EXPECT_EQ(table_of({0x04, 0x06, 0x01, 0x04}).get_token(0x01), "");
    EXPECT_EQ(table_of({0x04, 0x06, 0x01}).get_token(0x01), "");
    EXPECT_EQ(table_of({0x04, 0x06}).get_token(0x01), "");
    EXPECT_EQ(table_of({0x04}).get_token(0x01), "");
}

TEST(SpiTokenTable, TagByte7FDefinesNothing) {
    const SpiTokenTable table = table_of({0x04, 0x04, 0x7F, 0x01, 0x01, 'x', 0xAA});
    EXPECT_EQ(table.get_token(0x7F), "");
    EXPECT_EQ(table.get_token(0x01), "x");
}

}  // namespace

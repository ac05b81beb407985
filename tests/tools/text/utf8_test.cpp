#include "tools/text/utf8.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using dabspi::first_utf8_part;
using dabspi::in_quotes;
using dabspi::is_well_formed_utf8;
using dabspi::printable;

#define REPLACEMENT "\xEF\xBF\xBD"

TEST(Utf8, ReadsTheFirstAndLastCharacterOfEveryLength) {
    const struct {
        const char* text;
        std::size_t length;
        char32_t code_point;
    } characters[] = {
        {"\x01", 1, 0x01},
        {"\x7F", 1, 0x7F},
        {"\xC2\x80", 2, 0x80},
        {"\xDF\xBF", 2, 0x7FF},
        {"\xE0\xA0\x80", 3, 0x800},
        {"\xED\x9F\xBF", 3, 0xD7FF},
        {"\xEE\x80\x80", 3, 0xE000},
        {"\xEF\xBF\xBF", 3, 0xFFFF},
        {"\xF0\x90\x80\x80", 4, 0x10000},
        {"\xF4\x8F\xBF\xBF", 4, 0x10FFFF},
    };
    for (const auto& expected : characters) {
        const dabspi::utf8_part part = first_utf8_part(expected.text);
        EXPECT_TRUE(part.well_formed);
        EXPECT_EQ(part.length, expected.length);
        EXPECT_EQ(part.code_point, expected.code_point);
    }
}

TEST(Utf8, AcceptsNulBytes) {
    EXPECT_TRUE(is_well_formed_utf8(std::string("a\0b", 3)));
}

TEST(Utf8, EachMaximalIllFormedPartPrintsAsOneReplacement) {
    EXPECT_EQ(printable("\xE2\x28\xA1"), REPLACEMENT "(" REPLACEMENT);
    EXPECT_EQ(printable("\xF0\x80\x80"
                        "A"),
              REPLACEMENT REPLACEMENT REPLACEMENT "A");
    EXPECT_EQ(printable("\xED\xA0\x80"), REPLACEMENT REPLACEMENT REPLACEMENT);
    EXPECT_EQ(printable("\xF4\x90\x80\x80"), REPLACEMENT REPLACEMENT REPLACEMENT REPLACEMENT);
    EXPECT_EQ(printable("\xC0\xAF"), REPLACEMENT REPLACEMENT);
    EXPECT_EQ(printable("\xF1\x80\x80"
                        "A"
                        "\xE1\x80\xC2"
                        "B"),
              REPLACEMENT "A" REPLACEMENT REPLACEMENT "B");
    EXPECT_EQ(printable("cut \xF0\x9F\x98"), "cut " REPLACEMENT);
    EXPECT_EQ(printable("cut \xC3"), "cut " REPLACEMENT);
    EXPECT_EQ(printable("\xFE\xFF"), REPLACEMENT REPLACEMENT);
}

TEST(Utf8, PrintableTextCannotDriveATerminal) {
    EXPECT_EQ(printable("\x1B[2J"), "\\u001b[2J");
    EXPECT_EQ(printable("a\nb\tc\x7F"), "a\\u000ab\\u0009c\\u007f");
    EXPECT_EQ(printable("\xC2\x9B"), "\\u009b");  // a C1 control: CSI
    EXPECT_EQ(printable("\xE2\x80\xAE"
                        "abc"),
              "\\u202e"
              "abc");  // right-to-left override
    EXPECT_EQ(printable("Caf\xC3\xA9 \xF0\x9F\x98\x80"), "Caf\xC3\xA9 \xF0\x9F\x98\x80");
}

TEST(Utf8, QuotedTextIsCutByCharactersNotBytes) {
    EXPECT_EQ(in_quotes("abc", 3), "\"abc\"");
    EXPECT_EQ(in_quotes("abcd", 3), "\"abc\"...");
    EXPECT_EQ(in_quotes("\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9", 3), "\"\xC3\xA9\xC3\xA9\xC3\xA9\"...");
    EXPECT_EQ(in_quotes(""), "\"\"");
}

TEST(Printable, EscapesWhatIsNotSeenAndWhatIsNoCharacter) {
    EXPECT_EQ(dabspi::printable("a\u061Cb"), "a\\u061cb");
    EXPECT_EQ(dabspi::printable("\u200B\u200D\u2060\uFEFF"), "\\u200b\\u200d\\u2060\\ufeff");
    EXPECT_EQ(dabspi::printable("\xC2\x9B"
                                "31m"),
              "\\u009b31m")
        << "C1";
    EXPECT_EQ(dabspi::printable("\U000E0041"), "\\U000e0041") << "a tag";
    EXPECT_EQ(dabspi::printable("\uFDD0\uFFFE\U0001FFFF"), "\\ufdd0\\ufffe\\U0001ffff") << "noncharacters";
    EXPECT_EQ(dabspi::printable("\u202E\u2066"), "\\u202e\\u2066");
    EXPECT_EQ(dabspi::printable("Z\u00FCrich \u6771\u4EAC \U0001F600"),
              "Z\u00FCrich \u6771\u4EAC \U0001F600");
    EXPECT_EQ(dabspi::printable(dabspi::printable("\x1B\u202E")), dabspi::printable("\x1B\u202E"));
}

TEST(PrintableJson, SaysTheSameWithEscapes) {
    EXPECT_EQ(dabspi::printable_json("{\"a\": \"\u202E\U000E0041 \u00E9\"}\n"),
              "{\"a\": \"\\u202e\\udb40\\udc41 \u00E9\"}\n");
}

TEST(Combining, IsAMarkOverAnotherCharacter) {
    EXPECT_TRUE(dabspi::is_combining(0x0301));
    EXPECT_TRUE(dabspi::is_combining(0x0489));
    EXPECT_FALSE(dabspi::is_combining('e'));
}

}  // namespace

#include "tools/text/base64.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using dabspi::decode_base64;

std::string decoded(const std::string& text) {
    const dabspi::base64_result result = decode_base64(text);
    EXPECT_EQ(result.error, "") << text;
    return {result.data.begin(), result.data.end()};
}

std::string refusal(const std::string& text) {
    const dabspi::base64_result result = decode_base64(text);
    EXPECT_TRUE(result.data.empty()) << text;
    return result.error;
}

TEST(Base64, EncodesTheVectorsOfTheStandard) {
    const auto encoded = [](const std::string& text) {
        return dabspi::encode_base64({text.begin(), text.end()});
    };
    EXPECT_EQ(encoded(""), "");
    EXPECT_EQ(encoded("f"), "Zg==");
    EXPECT_EQ(encoded("fo"), "Zm8=");
    EXPECT_EQ(encoded("foo"), "Zm9v");
    EXPECT_EQ(encoded("foob"), "Zm9vYg==");
    EXPECT_EQ(encoded("fooba"), "Zm9vYmE=");
    EXPECT_EQ(encoded("\xFB\xFF"), "+/8=");
    EXPECT_EQ(dabspi::encode_base64({0x00, 0xFF, 0x80, 0xFB}), "AP+A+w==");
}

TEST(Base64, DecodesTheVectorsOfTheStandard) {
    EXPECT_EQ(decoded(""), "");
    EXPECT_EQ(decoded("Zg=="), "f");
    EXPECT_EQ(decoded("Zm8="), "fo");
    EXPECT_EQ(decoded("Zm9v"), "foo");
    EXPECT_EQ(decoded("Zm9vYg=="), "foob");
    EXPECT_EQ(decoded("Zm9vYmE="), "fooba");
    EXPECT_EQ(decoded("Zm9vYmFy"), "foobar");
}

TEST(Base64, DecodesEveryCharacterOfTheAlphabet) {
    const dabspi::base64_result result =
        decode_base64("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/");
    ASSERT_EQ(result.error, "");
    ASSERT_EQ(result.data.size(), 48u);
    // The six-bit groups read back must count from 0 to 63.
    for (unsigned group = 0; group < 64; ++group) {
        unsigned value = 0;
        for (unsigned bit = group * 6; bit < group * 6 + 6; ++bit)
            value = value << 1 | ((result.data[bit / 8] >> (7 - bit % 8)) & 1u);
        EXPECT_EQ(value, group);
    }
}

TEST(Base64, DecodesBytesThatAreNoText) {
    EXPECT_EQ(decoded("AP+A"), std::string("\0\xFF\x80", 3));
}

TEST(Base64, RefusesCharactersOutsideTheAlphabetAndSaysWhich) {
    EXPECT_EQ(refusal("Zm9-"), "character 4 is \"-\", which is not in the standard alphabet");
    EXPECT_EQ(refusal("Zm 9"), "character 3 is \" \", which is not in the standard alphabet");
    EXPECT_EQ(refusal("Zm9v\n"), "character 5 is \"\\u000a\", which is not in the standard alphabet");
    EXPECT_EQ(refusal("\xC3\xA9mm"), "character 1 is \"\xC3\xA9\", which is not in the standard alphabet");
    EXPECT_EQ(refusal("Zg==Zg=="), "character 3 is \"=\", which is not in the standard alphabet");
    EXPECT_EQ(refusal("Z==="), "character 2 is \"=\", which is not in the standard alphabet");
    EXPECT_EQ(refusal("===="), "character 1 is \"=\", which is not in the standard alphabet");
}

TEST(Base64, RefusesMissingPadding) {
    EXPECT_EQ(refusal("Zg"), "its length is 2, not a multiple of 4; pad it with \"=\"");
    EXPECT_EQ(refusal("Zg="), "its length is 3, not a multiple of 4; pad it with \"=\"");
    EXPECT_EQ(refusal("Zm9vY"), "its length is 5, not a multiple of 4; pad it with \"=\"");
}

TEST(Base64, RefusesBitsBeyondTheLastByte) {
    EXPECT_EQ(refusal("Zh=="), "its last character holds bits beyond the last byte");
    EXPECT_EQ(refusal("Zm9="), "its last character holds bits beyond the last byte");
}

}  // namespace

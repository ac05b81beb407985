#include <gtest/gtest.h>

#include "tools/spi/values.h"

namespace so = dabspi::spi_object;

namespace {

TEST(GenreValue, IsAUrnOfItsScheme) {
    std::vector<so::problem> problems;
    EXPECT_EQ(so::genre_text(so::decode_genre(so::bytes{0x03, 6, 8}, problems)),
              "urn:tva:metadata:cs:ContentCS:2005:3.6.8");
    EXPECT_EQ(so::genre_text(so::decode_genre(so::bytes{0x01}, problems)),
              "urn:tva:metadata:cs:IntentionCS:2005:1");
    EXPECT_TRUE(problems.empty());
}

TEST(GenreValue, UrnsAreCodedWhateverTheirYear) {
    EXPECT_EQ(so::encode_genre(*so::parse_genre("urn:tva:metadata:cs:ContentCS:2011:3.6.3.21")),
              (so::bytes{3, 6, 3, 21}));
    EXPECT_EQ(so::encode_genre(*so::parse_genre("urn:tva:metadata:cs:AtmosphereCS:2002:8")), (so::bytes{8}));
}

TEST(GenreValue, WhatIsNoGenreIsRefused) {
    for (const char* urn :
         {"", "urn:tva:metadata:cs:", "urn:tva:metadata:cs:ContentCS", "urn:tva:metadata:cs:ContentCS:2005:",
          "urn:tva:metadata:cs:ContentCS:2005:1.1", "urn:tva:metadata:cs:OtherCS:2005:9.1",
          "urn:tva:metadata:cs:ContentCS:2005:3.1.2.3.4", "urn:tva:metadata:cs:ContentCS:2005:3.256",
          "urn:tva:metadata:cs:ContentCS:2005:3.", "urn:tva:metadata:cs:ContentCS:x:3.1"})
        EXPECT_FALSE(so::parse_genre(urn)) << urn;
}

TEST(GenreValue, FaultsAreReported) {
    const auto code_of = [](const so::bytes& from) {
        std::vector<so::problem> problems;
        so::decode_genre(from, problems);
        EXPECT_EQ(problems.size(), 1U);
        return problems.at(0).code;
    };
    const std::string urn = "urn:tva:metadata:cs:ContentCS:2005:3.6";
    EXPECT_EQ(code_of(so::bytes(urn.begin(), urn.end())), so::problem_code::genre_as_text);
    EXPECT_EQ(code_of({}), so::problem_code::value_too_short);
    EXPECT_EQ(code_of({3, 1, 2, 3, 4}), so::problem_code::value_too_long);
    EXPECT_EQ(code_of({0}), so::problem_code::genre_scheme_unknown);
    EXPECT_EQ(code_of({9}), so::problem_code::genre_scheme_unknown);
    EXPECT_EQ(code_of({0x13}), so::problem_code::reserved_bits);
}

}  // namespace

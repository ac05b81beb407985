#include <gtest/gtest.h>

#include "tools/spi/values.h"

namespace so = dabspi::spi_object;

namespace {

TEST(PositionValues, AreDegreesWithABlankBetween) {
    const auto positions = so::parse_positions(" 51.473939\n-2.508112 ");
    ASSERT_TRUE(positions);
    EXPECT_EQ(*positions, (std::vector<so::position>{{4735602, -115373}}));
    EXPECT_EQ(so::positions_text(*positions), "51.473935 -2.508109");
}

TEST(PositionValues, TextsOfCodedPlacesAreReadBack) {
    for (std::int32_t step = -8280000; step <= 8280000; step += 9973) {
        const std::vector<so::position> positions = {{step, -step}};
        ASSERT_EQ(so::parse_positions(so::positions_text(positions)), positions);
        std::vector<so::problem> problems;
        ASSERT_EQ(so::decode_positions(so::encode_positions(positions), problems), positions);
        ASSERT_TRUE(problems.empty());
    }
}

TEST(PositionValues, WhatIsNoPlaceIsRefused) {
    for (const char* text :
         {"", " ", "51.4", "51.4,2.5", "51.4 2.5 3", "91 0", "0 181", "nan 0", "inf 0", "1e5 0", "a b"})
        EXPECT_FALSE(so::parse_positions(text)) << text;
}

TEST(PositionValues, FaultsAreReported) {
    std::vector<so::problem> problems;
    so::decode_positions(so::bytes{0x7F, 0xFF, 0xFF, 0, 0, 0}, problems);
    ASSERT_EQ(problems.size(), 1U);
    EXPECT_EQ(problems[0].code, so::problem_code::position_out_of_range);
    problems.clear();
    EXPECT_EQ(so::decode_positions(so::bytes{0, 0, 1, 0, 0, 1, 9}, problems).size(), 1U);
    ASSERT_EQ(problems.size(), 1U);
    EXPECT_EQ(problems[0].code, so::problem_code::value_too_short);
}

}  // namespace

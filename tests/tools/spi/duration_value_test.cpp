#include <gtest/gtest.h>

#include "tools/spi/values.h"

namespace so = dabspi::spi_object;

namespace {

TEST(DurationValue, IsWrittenInHoursMinutesAndSeconds) {
    EXPECT_EQ(so::duration_text(0), "PT0S");
    EXPECT_EQ(so::duration_text(5400), "PT1H30M");
    EXPECT_EQ(so::duration_text(3601), "PT1H1S");
    EXPECT_EQ(so::duration_text(65535), "PT18H12M15S");
}

TEST(DurationValue, EveryCodedDurationIsReadBack) {
    for (std::uint32_t seconds = 0; seconds <= 65535; ++seconds)
        ASSERT_EQ(so::parse_duration(so::duration_text(seconds)), seconds);
}

TEST(DurationValue, OtherSpellingsAreAccepted) {
    EXPECT_EQ(so::parse_duration("PT3H0M"), 10800U);
    EXPECT_EQ(so::parse_duration("PT90M"), 5400U);
    EXPECT_EQ(so::parse_duration("P1DT1S"), 86401U);
    EXPECT_EQ(so::parse_duration("P1W"), 604800U);
}

TEST(DurationValue, WhatIsNoDurationIsRefused) {
    for (const char* text :
         {"", "P", "PT", "1H", "PT1", "PT1H1H", "PT1S1M", "P1H", "PT1D", "P1DT", "P1M", "P1Y", "-PT1H",
          "PT1.5S", "PT H", "PT1H ", "PTT1H", "P9999999D", "PT9999999999S"})
        EXPECT_FALSE(so::parse_duration(text)) << text;
}

}  // namespace

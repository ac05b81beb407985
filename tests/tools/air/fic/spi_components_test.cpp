#include <gtest/gtest.h>

#include "tests/tools/air/fic/fed.h"

namespace {

namespace mb = multiplex_builder;
using air_tests::fic_feeder;
using dabspi::air::spi_component;

const mb::bytes kSpiData = {0x01};

TEST(SpiComponents, AreFoundInSeveralServicesAndAddresses) {
    fic_feeder feed;
    feed({mb::fig_0_1_long(30, 0, 0, 2, 48), mb::fig_0_2(0xE1C00001, {{3, 1}}),
          mb::fig_0_2(0xE1C00002, {{3, 2}, {3, 3, false}}), mb::fig_0_3(1, 30, 1), mb::fig_0_3(2, 30, 2),
          mb::fig_0_3(3, 30, 1023), mb::fig_0_8(0xE1C00002, 5, true, 3),
          mb::fig_0_13(0xE1C00001, 0, {{7, kSpiData}}), mb::fig_0_13(0xE1C00002, 0, {{2, {}}, {7, kSpiData}}),
          mb::fig_0_13(0xE1C00002, 5, {{7, {}}})});
    const auto spi = feed.spi();
    ASSERT_EQ(spi.size(), 3U);
    EXPECT_EQ(spi[0].sid, 0xE1C00001);
    EXPECT_EQ(spi[0].address, 1);
    EXPECT_EQ(spi[1].scids, 0);
    EXPECT_EQ(spi[1].address, 2);
    EXPECT_EQ(spi[2].sid, 0xE1C00002);
    EXPECT_EQ(spi[2].scids, 5);
    EXPECT_EQ(spi[2].address, 1023);
    for (const spi_component& each : spi)
        EXPECT_EQ(each.sub_channel, 30);
}

TEST(SpiComponents, MayBeSecondaryComponentsOfAudioServices) {
    fic_feeder feed;
    feed({mb::fig_0_2(0xC221, {{0, 3, true}, {3, 9, false}}), mb::fig_0_3(9, 14, 77, 60, true, 0x1234),
          mb::fig_0_8(0xC221, 0, false, 3), mb::fig_0_8(0xC221, 2, true, 9, true),
          mb::fig_0_13(0xC221, 2, {{7, kSpiData}})});
    ASSERT_EQ(feed.spi().size(), 1U);
    EXPECT_EQ(feed.spi()[0].sid, 0xC221U);
    EXPECT_FALSE(feed.spi()[0].long_id);
    EXPECT_EQ(feed.spi()[0].scids, 2);
    EXPECT_EQ(feed.spi()[0].address, 77);
}

TEST(SpiComponents, AreNotReadUnderAccessControlInXPadOrWithoutMot) {
    fic_feeder feed;
    feed({mb::fig_0_2(0xE1C00001, {{3, 1, true, true}}), mb::fig_0_3(1, 30, 1),
          mb::fig_0_13(0xE1C00001, 0, {{7, {}}}), mb::fig_0_2(0xC221, {{0, 3}}),
          mb::fig_0_13(0xC221, 0, {{7, {0x0C, 0x3C}}}), mb::fig_0_2(0xE1C00003, {{3, 3}}),
          mb::fig_0_3(3, 30, 3, 5), mb::fig_0_13(0xE1C00003, 0, {{7, {}}}), mb::fig_0_2(0xE1C00004, {{3, 4}}),
          mb::fig_0_3(4, 30, 4, 60, false), mb::fig_0_13(0xE1C00004, 0, {{7, {}}})});
    EXPECT_TRUE(feed.spi().empty());
    const auto why = unreadable_spi(feed.described());
    ASSERT_EQ(why.size(), 4U);
    EXPECT_EQ(why[0], "the SPI of service C221 is in the X-PAD of an audio component, which is not read");
    EXPECT_EQ(why[1], "the SPI of service E1C00001 is under access control");
}

TEST(SpiComponents, OtherApplicationsAreNone) {
    fic_feeder feed;
    feed({mb::fig_0_2(0xE1C00001, {{3, 1}}), mb::fig_0_3(1, 30, 1),
          mb::fig_0_13(0xE1C00001, 0, {{2, {}}, {4, {}}})});
    EXPECT_TRUE(feed.spi().empty());
}

TEST(SpiComponents, ComeOnlyWhenTheirPlaceIsKnown) {
    fic_feeder feed;
    feed({mb::fig_0_13(0xE1C00001, 0, {{7, {}}}), mb::fig_0_2(0xE1C00001, {{3, 1}})});
    EXPECT_TRUE(feed.spi().empty());
    feed({mb::fig_0_3(1, 30, 1)});
    EXPECT_EQ(feed.spi().size(), 1U);
}

}  // namespace

// A small logo is not written once the station's large one is on disk.
#include "tests/logo_db/logo_db_fixture.h"

namespace logo_db {
namespace {

class Sizes : public LogoDb {
 protected:
    bool large_exists(int ecc, int sid, int scids) const {
        return spi::SpiLogoDb::isFindLargeSizeLogo(ecc, sid, scids, root.path().string());
    }
    bool superfluous(const spi::ServElemId& service, std::uint8_t size_code) const {
        return db.isExist_SizeLogo_LGRECTS(logo_of(service, kPng, size_code), root.path().string());
    }
};

TEST_F(Sizes, ASmallLogoAfterTheLargeOneIsSkippedAndUsedUp) {
    announce("large", 4);
    announce("small", 3);
    receive("large", "large");
    expect_reported({"E1C2210_4.PNG"});
    EXPECT_EQ(receive("small", "small"), 0);
    expect_reported({});
    expect_files({"E1C2210_4.PNG"});
    EXPECT_EQ(receive("small", "small"), 1);
}

TEST_F(Sizes, ALargeLogoAfterTheSmallOneIsWritten) {
    announce("small", 3);
    announce("large", 4);
    receive("small", "small");
    receive("large", "large");
    expect_reported({"E1C2210_3.PNG", "E1C2210_4.PNG"});
    expect_files({"E1C2210_3.PNG", "E1C2210_4.PNG"});
}

TEST_F(Sizes, ASkippedSmallLogoLeavesAnOlderOneAsItIs) {
    put("E1C2210_3.PNG", "old small");
    put("E1C2210_4.PNG", "old large");
    announce("small", 3);
    receive("small", "new small");
    expect_reported({});
    EXPECT_EQ(content("E1C2210_3.PNG"), "old small");
}

TEST_F(Sizes, ASkippedSmallLogoDoesNotKeepTheBodyFromTheOthers) {
    put("E1C2210_4.PNG");
    announce("logo", 4, kPng, {0xC222, 0xE1, 0});
    announce("logo", 3);
    announce("logo", 4, kPng, {0xC223, 0xE1, 0});
    EXPECT_EQ(receive("logo", "one body"), 0);
    expect_reported({"E1C2220_4.PNG", "E1C2230_4.PNG"});
    expect_files({"E1C2210_4.PNG", "E1C2220_4.PNG", "E1C2230_4.PNG"});
}

TEST_F(Sizes, AnotherStationsLargeLogoDoesNotCount) {
    put("E1C2220_4.PNG");
    put("E2C2210_4.PNG");
    put("E1C2211_4.PNG");
    announce("small", 3);
    receive("small", "small");
    expect_reported({"E1C2210_3.PNG"});
}

TEST_F(Sizes, OnlyASmallLogoIsSuperfluous) {
    put("E1C2210_4.PNG");
    for (const int size_code : {0, 1, 2, 4, 5, 6, 255})
        EXPECT_FALSE(superfluous(station, static_cast<std::uint8_t>(size_code))) << size_code;
    EXPECT_TRUE(superfluous(station, 3));
}

TEST_F(Sizes, TheLargeLogoMayBeOfAnyFormat) {
    EXPECT_FALSE(large_exists(0xE1, 0xC221, 0));
    put("E1C2210_4.JPG");
    EXPECT_TRUE(large_exists(0xE1, 0xC221, 0));
}

TEST_F(Sizes, TheLargeLogosNameHasADotBehindTheSizeCode) {
    put("E1C2210_4");
    put("E1C2210_40.PNG");
    put("E1C2210_3.PNG");
    put("XE1C2210_4.PNG");
    put("e1c2210_4.PNG");  // capitals matter
    EXPECT_FALSE(large_exists(0xE1, 0xC221, 0));
    put("E1C2210_4.");
    EXPECT_TRUE(large_exists(0xE1, 0xC221, 0));
}

TEST_F(Sizes, ThePrefixPacksEightSixteenAndFourBits) {
    put("E1C2215_4.PNG");
    EXPECT_TRUE(large_exists(0xE1, 0xC221, 5));
    EXPECT_TRUE(large_exists(0x1E1, 0x1C221, 0x25));
    EXPECT_FALSE(large_exists(0xE1, 0xC221, 6));
    put("AB00010_4.PNG");
    EXPECT_TRUE(large_exists(0xAB, 1, 0));  // the packed number is padded inside
    put("1C2210_4.PNG");
    EXPECT_TRUE(large_exists(0x01, 0xC221, 0));  // and not at its front
    put("10_4.PNG");
    EXPECT_TRUE(large_exists(0, 1, 0));
}

TEST_F(Sizes, AShortServiceIdentifierDoesNotMatchItsOwnFileName) {
    const spi::ServElemId short_sid{0x221, 0xE1, 0};
    announce("large", 4, kPng, short_sid);
    announce("small", 3, kPng, short_sid);
    receive("large", "large");
    receive("small", "small");  // the search looks for E102210_4: the large one is not seen
    expect_reported({"E12210_3.PNG", "E12210_4.PNG"});
}

TEST_F(Sizes, AThirtyTwoBitServiceIsSearchedForByItsLowBits) {
    put("E1C2210_4.PNG");
    EXPECT_TRUE(superfluous({0xE1C0C221, 0xE1, 0}, 3));
    EXPECT_FALSE(superfluous({0xE1C0C222, 0xE1, 0}, 3));
}

TEST_F(Sizes, ThePatternCharactersOfTheRootStandForThemselves) {
    const std::string odd = root / "a*b?[c]";
    std::filesystem::create_directory(odd);
    std::filesystem::create_directory(root / "aXbY[c]");
    std::ofstream((root / "aXbY[c]") + "/E1C2210_4.PNG") << "elsewhere";
    EXPECT_FALSE(spi::SpiLogoDb::isFindLargeSizeLogo(0xE1, 0xC221, 0, odd));
    std::ofstream(odd + "/E1C2210_4.PNG") << "here";
    EXPECT_TRUE(spi::SpiLogoDb::isFindLargeSizeLogo(0xE1, 0xC221, 0, odd));
}

}  // namespace
}  // namespace logo_db

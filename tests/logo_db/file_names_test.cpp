// The name that a logo's file gets.
#include <gtest/gtest.h>

#include <locale>

#include "tests/logo_db/logo_db_fixture.h"

namespace logo_db {
namespace {

std::string file_name(const spi::ServElemId& service, int size_code, int format) {
    return spi::SpiLogoData(
               logo_of(service, static_cast<std::uint8_t>(format), static_cast<std::uint8_t>(size_code)))
        .create_filename();
}

TEST(LogoFileName, IsEccServiceAndScidsThenTheSizeCode) {
    EXPECT_EQ(file_name({0xC221, 0xE1, 0}, 3, kPng), "E1C2210_3.PNG");
    EXPECT_EQ(file_name({0xC221, 0xE1, 0}, 4, kPng), "E1C2210_4.PNG");
    EXPECT_EQ(file_name({0xABCD, 0xEF, 15}, 4, kPng), "EFABCDF_4.PNG");
}

TEST(LogoFileName, ThirtyTwoBitServicesStandAlone) {
    EXPECT_EQ(file_name({0xFFFF, 0xE1, 2}, 3, kPng), "E1FFFF2_3.PNG");
    EXPECT_EQ(file_name({0x10000, 0xE1, 2}, 3, kPng), "10000_3.PNG");
    EXPECT_EQ(file_name({0xE1ABCDEF, 0xE1, 2}, 3, kPng), "E1ABCDEF_3.PNG");
}

TEST(LogoFileName, NothingIsPadded) {
    EXPECT_EQ(file_name({0x221, 0xE1, 0}, 3, kPng), "E12210_3.PNG");
    EXPECT_EQ(file_name({0xC221, 0x01, 0}, 3, kPng), "1C2210_3.PNG");
    EXPECT_EQ(file_name({0, 0, 0}, 0, kPng), "000_0.PNG");
    EXPECT_EQ(file_name({0xC221, 0xE1, 0x1F}, 3, kPng), "E1C2211F_3.PNG");
}

TEST(LogoFileName, SizeCodesAreHexadecimal) {
    EXPECT_EQ(file_name(station, 9, kPng), "E1C2210_9.PNG");
    EXPECT_EQ(file_name(station, 10, kPng), "E1C2210_A.PNG");
    EXPECT_EQ(file_name(station, 255, kPng), "E1C2210_FF.PNG");
}

TEST(LogoFileName, TheExtensionFollowsTheAnnouncedFormat) {
    EXPECT_EQ(file_name(station, 3, kJpeg), "E1C2210_3.JPG");
    EXPECT_EQ(file_name(station, 3, kPng), "E1C2210_3.PNG");
    EXPECT_EQ(file_name(station, 3, 0), "E1C2210_3.");
    EXPECT_EQ(file_name(station, 3, 3), "E1C2210_3.");
    EXPECT_EQ(file_name(station, 3, 255), "E1C2210_3.");
}

TEST(LogoFileName, ReplacesTheContentNameInTheRecord) {
    const spi::SpiLogoInfo meta = spi::SpiLogoData(logo_of({0xC221, 0xE1, 7}, kPng, 4, "content")).get_meta();
    EXPECT_EQ(meta.service, (spi::ServElemId{0xC221, 0xE1, 7}));
    EXPECT_EQ(meta.image_format, kPng);
    EXPECT_EQ(meta.size_code, 4);
    EXPECT_EQ(meta.name, "E1C2217_4.PNG");
}

// A host may have set a locale that groups digits; numbers of the library must not follow it.
class grouping_locale {
 public:
    grouping_locale() : before_(std::locale::global(std::locale(std::locale::classic(), new grouping))) {}
    ~grouping_locale() { std::locale::global(before_); }
    grouping_locale(const grouping_locale&) = delete;
    grouping_locale& operator=(const grouping_locale&) = delete;

 private:
    struct grouping : std::numpunct<char> {
        std::string do_grouping() const override { return "\3"; }
        char do_thousands_sep() const override { return ','; }
    };
    std::locale before_;
};

TEST(LogoFileName, DoesNotFollowTheHostsLocale) {
    const grouping_locale host;
    std::ostringstream grouped;
    grouped << 1234567;
    ASSERT_EQ(grouped.str(), "1,234,567");
    EXPECT_EQ(file_name(station, 3, kPng), "E1C2210_3.PNG");
    EXPECT_EQ(spi::SpiLogoDb::toString(0xE1C2210), "e1c2210");
}

TEST(LogoFileName, AHostsLocaleDoesNotHideTheLargeLogo) {
    const grouping_locale host;
    const temporary_directory root;
    std::ofstream(root / "E1C2210_4.PNG") << "large";
    EXPECT_TRUE(spi::SpiLogoDb::isFindLargeSizeLogo(0xE1, 0xC221, 0, root.path().string()));
}

TEST(LogoSearchNumber, IsLowerCaseHexadecimalWithoutPadding) {
    EXPECT_EQ(spi::SpiLogoDb::toString(0), "0");
    EXPECT_EQ(spi::SpiLogoDb::toString(10), "a");
    EXPECT_EQ(spi::SpiLogoDb::toString(0xE1C2210), "e1c2210");
    EXPECT_EQ(spi::SpiLogoDb::toString(0xFFFFFFFF), "ffffffff");
}

}  // namespace
}  // namespace logo_db

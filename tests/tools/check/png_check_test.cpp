#include "tools/check/png_check.h"

#include <gtest/gtest.h>

#include "tests/tools/check/broadcast.h"

namespace {

using dabspi::check::check_png;
using dabspi::check::png_verdict;

TEST(PngCheck, TellsTheSizeOfAGoodOne) {
    const png_verdict verdict = check_png(check_test::png(320, 240));
    EXPECT_TRUE(verdict.good) << verdict.fault;
    EXPECT_EQ(verdict.width, 320U);
    EXPECT_EQ(verdict.height, 240U);
}

TEST(PngCheck, FindsOneThatIsCutAnywhere) {
    const check_test::bytes whole = check_test::png(32, 32);
    for (std::size_t size = 0; size + 12 < whole.size();
         ++size)  // without the last chunk it can still be shown
        EXPECT_FALSE(check_png(spi_builder::cut(whole, size)).good) << size;
}

TEST(PngCheck, FindsADamagedOne) {
    check_test::bytes damaged = check_test::png(32, 32);
    damaged[damaged.size() / 2] ^= 0xFF;
    const png_verdict verdict = check_png(damaged);
    EXPECT_FALSE(verdict.good);
    EXPECT_EQ(verdict.fault.substr(0, 14), "a damaged PNG:") << verdict.fault;
}

TEST(PngCheck, NamesOtherImages) {
    EXPECT_EQ(check_png(spi_builder::str("GIF89a\x10")).fault, "it is a GIF image");
    EXPECT_EQ(check_png(spi_builder::str("<html>")).fault, "it is no image");
    EXPECT_EQ(check_png(check_test::bytes{}).fault, "it is no image");
}

TEST(PngCheck, DoesNotUnpackABomb) {
    check_test::bytes huge = check_test::png(16, 16);
    // 65,535 x 65,535 pixels by its header, with the header's checksum repaired.
    for (const std::size_t at : {18U, 19U, 22U, 23U})
        huge[at] = 0xFF;
    std::uint32_t crc = 0xFFFFFFFF;
    for (std::size_t i = 12; i < 29; ++i) {
        crc ^= huge[i];
        for (int bit = 0; bit < 8; ++bit)
            crc = crc >> 1 ^ (crc & 1U ? 0xEDB88320U : 0U);
    }
    crc = ~crc;
    for (std::size_t i = 0; i < 4; ++i)
        huge[29 + i] = static_cast<std::uint8_t>(crc >> (24 - 8 * i));
    EXPECT_EQ(check_png(huge).fault, "a PNG of more than 16 million pixels");
}

}  // namespace

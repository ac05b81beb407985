#include "tools/inspect/image_header.h"

#include <gtest/gtest.h>

#include <string>

#include "testkit/spi_builder.h"

namespace sb = spi_builder;
using dabspi::image_header;
using dabspi::read_image_header;

namespace {

const sb::bytes kPng =
    sb::join({sb::str("\x89PNG\r\n\x1A\n"), sb::u32(13), sb::str("IHDR"), sb::u32(320), sb::u32(240)});
const sb::bytes kJpeg = {0xFF, 0xD8, 0xFF, 0xE0, 0, 4, 9, 9, 0xFF, 0xFF, 0xC2, 0, 11, 8, 0, 240, 1, 64, 3, 0};

std::string described(const sb::bytes& body) {
    const auto image = read_image_header(body);
    return image ? std::string(image->kind) + " " + std::to_string(image->width) + "x" +
                       std::to_string(image->height)
                 : "none";
}

TEST(ImageHeader, TellsKindAndSize) {
    EXPECT_EQ(described(kPng), "PNG 320x240");
    EXPECT_EQ(described(kJpeg), "JPEG 320x240");
    EXPECT_EQ(described(sb::join({sb::str("GIF89a"), {64, 1, 240, 0}})), "GIF 320x240");
    sb::bytes bmp = sb::str("BM");
    bmp.resize(14);
    EXPECT_EQ(described(sb::join({bmp, {40, 0, 0, 0, 64, 1, 0, 0, 240, 0, 0, 0, 1}})), "BMP 320x240");
}

TEST(ImageHeader, OfACutImageTheSizeIsNotKnown) {
    for (std::size_t size = 8; size < kPng.size(); ++size)
        EXPECT_EQ(described(sb::cut(kPng, size)), "PNG 0x0") << size;
    for (std::size_t size = 3; size < 18; ++size)
        EXPECT_EQ(described(sb::cut(kJpeg, size)), "JPEG 0x0") << size;
}

TEST(ImageHeader, AJpegThatLeadsNowhereEnds) {
    EXPECT_EQ(described({0xFF, 0xD8, 0xFF, 0xE0, 0, 0, 0xFF, 0xE0, 0, 0, 0, 0, 0, 0}), "JPEG 0x0");
    EXPECT_EQ(described({0xFF, 0xD8, 0xFF, 0xE0, 0xFF, 0xFF, 0, 0, 0, 0, 0, 0}), "JPEG 0x0");
    EXPECT_EQ(described({0xFF, 0xD8, 0xFF, 0xDA, 0, 2, 0xFF, 0xC0, 0, 11, 8, 0, 1, 0, 1, 0, 0}), "JPEG 0x0");
}

TEST(ImageHeader, OtherBytesAreNoImage) {
    EXPECT_EQ(described({}), "none");
    EXPECT_EQ(described({0x02, 0x00}), "none");
    EXPECT_EQ(described(sb::str("BM")), "none");
}

}  // namespace

// One announced image: its format, its size code, its announcement.
#include "src/parse/si_media_info.h"

#include <gtest/gtest.h>

#include "tests/parse/reading.h"

namespace {

using namespace spi_builder;
using spi::SiMediaInfo;

int size_code(unsigned width, unsigned height) {
    SiMediaInfo media;
    media.width = static_cast<std::uint16_t>(width);
    media.height = static_cast<std::uint16_t>(height);
    return media.get_fmt();
}

std::string extension(const std::string& url) {
    SiMediaInfo media;
    media.url = url;
    return media.get_ext();
}

int image_format(const std::string& mime, const std::string& url) {
    SiMediaInfo media;
    media.mime = mime;
    media.url = url;
    return media.logo_info().image_format;
}

TEST(SiMediaInfo, NewOneIsEmpty) {
    const SiMediaInfo media;
    EXPECT_EQ(media.id, service_of(0, 0));
    EXPECT_EQ(media.mime, "");
    EXPECT_EQ(media.url, "");
    EXPECT_EQ(media.width, 0);
    EXPECT_EQ(media.height, 0);
}

TEST(SiMediaInfoSize, FiveSizesHaveCodes) {
    EXPECT_EQ(size_code(32, 32), 1);
    EXPECT_EQ(size_code(112, 32), 2);
    EXPECT_EQ(size_code(128, 128), 3);
    EXPECT_EQ(size_code(320, 240), 4);
    EXPECT_EQ(size_code(600, 600), 5);
}

TEST(SiMediaInfoSize, UnknownIsZeroAndAnyOtherIsSix) {
    EXPECT_EQ(size_code(0, 0), 0);
    EXPECT_EQ(size_code(240, 320), 6);
    EXPECT_EQ(size_code(32, 112), 6);
    EXPECT_EQ(size_code(33, 32), 6);
    EXPECT_EQ(size_code(32, 31), 6);
    EXPECT_EQ(size_code(320, 241), 6);
    EXPECT_EQ(size_code(65535, 65535), 6);
}

TEST(SiMediaInfoSize, MissingDimensionTakesTheOtherAndTheRecordKeepsIt) {
    SiMediaInfo wide;
    wide.width = 600;
    EXPECT_EQ(wide.get_fmt(), 5);
    EXPECT_EQ(wide.height, 600);
    SiMediaInfo high;
    high.height = 128;
    EXPECT_EQ(high.get_fmt(), 3);
    EXPECT_EQ(high.width, 128);
    EXPECT_EQ(size_code(320, 0), 6);
    EXPECT_EQ(size_code(0, 32), 1);
}

TEST(SiMediaInfoType, ColourSquareIs32By32) {
    SiMediaInfo media;
    media.set_type(4);
    EXPECT_EQ(media.width, 32);
    EXPECT_EQ(media.height, 32);
}

TEST(SiMediaInfoType, ColourRectangleIs112By32) {
    SiMediaInfo media;
    media.set_type(6);
    EXPECT_EQ(media.width, 112);
    EXPECT_EQ(media.height, 32);
}

TEST(SiMediaInfoType, EveryOtherChangesNothing) {
    for (unsigned type = 0; type < 256; ++type) {
        if (type == 4 || type == 6) continue;
        SiMediaInfo media;
        media.width = 7;
        media.height = 9;
        media.set_type(static_cast<unsigned char>(type));
        EXPECT_EQ(media.width, 7) << type;
        EXPECT_EQ(media.height, 9) << type;
    }
}

TEST(SiMediaInfoExtension, IsWhatStandsBehindTheLastDot) {
    EXPECT_EQ(extension("logos/a.b.png"), "png");
    EXPECT_EQ(extension("logos/ab.c/x"), "c/x");
    EXPECT_EQ(extension("a."), "");
    EXPECT_EQ(extension(".png"), "png");
    EXPECT_EQ(extension(""), "");
}

TEST(SiMediaInfoExtension, HasAtMostEightCharacters) {
    EXPECT_EQ(extension("a.12345678"), "12345678");
    EXPECT_EQ(extension("a.123456789"), "12345678");
}

TEST(SiMediaInfoExtension, WithoutADotIsTheBeginningOfTheUrl) {
    EXPECT_EQ(extension("png"), "png");
    EXPECT_EQ(extension("logos/station"), "logos/st");
}

TEST(SiMediaInfoFormat, FollowsTheMimeType) {
    EXPECT_EQ(image_format("image/jpeg", "a.png"), 1);
    EXPECT_EQ(image_format("image/png", "a.jpg"), 2);
    EXPECT_EQ(image_format("image/png", "logos/ab.c/x"), 2);
}

TEST(SiMediaInfoFormat, FollowsTheExtensionWithoutAKnownMimeType) {
    EXPECT_EQ(image_format("", "a.png"), 2);
    EXPECT_EQ(image_format("", "a.PNG"), 2);
    EXPECT_EQ(image_format("", "a.JPG"), 1);
    EXPECT_EQ(image_format("", "a.jpg"), 1);
    EXPECT_EQ(image_format("", "a.jpeg"), 1);
    EXPECT_EQ(image_format("image/gif", "a.png"), 2);
    EXPECT_EQ(image_format("image/PNG", "a.jpg"), 1);
    EXPECT_EQ(image_format("", "png"), 2);  // no dot: the whole name
}

TEST(SiMediaInfoFormat, ExtensionsAreComparedAsTheyAreWritten) {
    for (const char* url : {"a.JPEG", "a.Png", "a.Jpg", "a.pNG", "a.gif", "a.", "a", "", "a.pngx", "a.jpe",
                            "logos/ab.c/x", "a.png ", "image/png"})
        EXPECT_EQ(image_format("", url), 0) << url;
    EXPECT_EQ(image_format("image/pn", "a"), 0);
    EXPECT_EQ(image_format("image/jpg", "a"), 0);
}

TEST(SiMediaInfo, AnnouncementHoldsServiceFormatSizeAndUrl) {
    SiMediaInfo media;
    media.id = service_of(0xE1, 0xC221, 2);
    media.mime = "image/png";
    media.url = "logos/a";
    media.width = 320;
    media.height = 240;
    const spi::SpiLogoInfo logo = media.logo_info();
    EXPECT_EQ(logo.service, service_of(0xE1, 0xC221, 2));
    EXPECT_EQ(logo.image_format, 2);
    EXPECT_EQ(logo.size_code, 4);
    EXPECT_EQ(logo.name, "logos/a");
}

TEST(SiMediaInfo, AnnouncementMayBeMadeAgain) {
    SiMediaInfo media;
    media.url = "logos/a.png";
    const spi::SpiLogoInfo first = media.logo_info();
    EXPECT_EQ(media.get_ext(), "png");
    const spi::SpiLogoInfo second = media.logo_info();
    EXPECT_EQ(first.name, "logos/a.png");
    EXPECT_EQ(second.name, "logos/a.png");
    EXPECT_EQ(second.image_format, first.image_format);
    EXPECT_EQ(second.image_format, spi::LOGO_FORMAT_PNG);
}

TEST(SiMediaInfo, MimeTypeIsReadOnceWithItsTokens) {
    spi::SpiTokenTable tokens = table_of(token_table({{0x01, "image/"}}));
    SiMediaInfo media;
    element_of first(attr(0x80, str("\x01png")));
    EXPECT_EQ(media.parse_mime(first, tokens), 0);
    EXPECT_EQ(media.mime, "image/png");
    element_of second(attr(0x80, str("image/jpeg")));
    EXPECT_EQ(media.parse_mime(second, tokens), 0);
    EXPECT_EQ(media.mime, "image/png");
}

TEST(SiMediaInfo, UrlIsReadOnceWithItsTokens) {
    spi::SpiTokenTable tokens = table_of(token_table({{0x01, "logos/"}}));
    SiMediaInfo media;
    element_of first(attr(0x82, str("\x01"
                                    "a.png")));
    EXPECT_EQ(media.parse_url(first, tokens), 0);
    EXPECT_EQ(media.url, "logos/a.png");
    element_of second(attr(0x82, str("b.png")));
    EXPECT_EQ(media.parse_url(second, tokens), 0);
    EXPECT_EQ(media.url, "logos/a.png");
}

TEST(SiMediaInfo, EmptyTextsLeaveRoomForLaterOnes) {
    spi::SpiTokenTable tokens;
    SiMediaInfo media;
    for (const char* value : {"", "\x07", "later"}) {  // none, one that vanishes, one that counts
        element_of mime(attr(0x80, str(value)));
        media.parse_mime(mime, tokens);
        element_of url(attr(0x82, str(value)));
        media.parse_url(url, tokens);
    }
    EXPECT_EQ(media.mime, "later");
    EXPECT_EQ(media.url, "later");
}

TEST(SiMediaInfo, TextsCutShortKeepTheBytesThatExist) {
    spi::SpiTokenTable tokens;
    SiMediaInfo media;
    element_of mime({0x80, 0x09, 'i', 'm'});
    media.parse_mime(mime, tokens);
    element_of url({0x82, 0x09});
    media.parse_url(url, tokens);
    EXPECT_EQ(media.mime, "im");
    EXPECT_EQ(media.url, "");
}

}  // namespace

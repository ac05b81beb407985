// Announcements and the images that take them.
#include "tests/logo_db/logo_db_fixture.h"

namespace logo_db {
namespace {

using Announcements = LogoDb;

TEST_F(Announcements, AnAnnouncedImageIsWrittenAndReported) {
    announce("logo.png", 4);
    EXPECT_EQ(receive("logo.png", "image"), 0);
    expect_files({"E1C2210_4.PNG"});
    EXPECT_EQ(content("E1C2210_4.PNG"), "image");
    const std::vector<spi::SpiLogoInfo> logos = reported();
    ASSERT_EQ(logos.size(), 1U);
    EXPECT_EQ(logos[0].service, station);
    EXPECT_EQ(logos[0].image_format, kPng);
    EXPECT_EQ(logos[0].size_code, 4);
    EXPECT_EQ(logos[0].name, "E1C2210_4.PNG");
}

TEST_F(Announcements, AnImageThatComesFirstIsLost) {
    EXPECT_EQ(receive("logo.png", "image"), 1);
    announce("logo.png", 4);
    expect_reported({});
    expect_files({});
}

TEST_F(Announcements, AnotherContentNameTakesNothing) {
    announce("logo.png", 4);
    EXPECT_EQ(receive("other.png", "image"), 0);
    EXPECT_EQ(receive("LOGO.PNG", "image"), 0);
    EXPECT_EQ(receive("logo.png ", "image"), 0);
    expect_reported({});
    EXPECT_EQ(receive("logo.png", "image"), 0);  // still there
    expect_reported({"E1C2210_4.PNG"});
}

TEST_F(Announcements, AnEmptyContentNameIsANameLikeAnyOther) {
    announce("", 4);
    EXPECT_EQ(receive("", "image"), 0);
    expect_reported({"E1C2210_4.PNG"});
}

TEST_F(Announcements, AContentNameMayHoldAnyByte) {
    const std::string odd("a\0b/\xFF", 5);
    announce(odd, 4);
    EXPECT_EQ(receive(std::string("a\0c", 3), "image"), 0);
    expect_reported({});
    EXPECT_EQ(receive(odd, "image"), 0);
    expect_reported({"E1C2210_4.PNG"});
}

TEST_F(Announcements, AreKeptUnderTheServiceThatTheyWereReceivedWith) {
    announce("logo.png", 4);
    EXPECT_EQ(receive("logo.png", "image", station), 1);  // the described station is not the key
    EXPECT_EQ(receive("logo.png", "image", {data_service.sid, 0xE2, 0}), 1);
    EXPECT_EQ(receive("logo.png", "image", {data_service.sid, 0xE1, 1}), 1);
    expect_reported({});
    EXPECT_EQ(receive("logo.png", "image"), 0);
    expect_reported({"E1C2210_4.PNG"});
}

TEST_F(Announcements, ServicesWithOneHashAreKeptApart) {
    // The low bits of the identifier make the hash; these differ above them.
    announce("logo.png", 4);
    EXPECT_EQ(receive("logo.png", "image", {0xE2C00221, 0xE2, 0}), 1);
    expect_reported({});
}

TEST_F(Announcements, OneBodyServesTwoSizes) {
    announce({logo_of({0xC221, 0xE1, 0}, kPng, 4), logo_of({0xC222, 0xE1, 0}, kPng, 3)});
    EXPECT_EQ(receive("logo", "one body"), 0);
    expect_reported({"E1C2210_4.PNG", "E1C2220_3.PNG"});
    EXPECT_EQ(content("E1C2210_4.PNG"), "one body");
    EXPECT_EQ(content("E1C2220_3.PNG"), "one body");
}

TEST_F(Announcements, OneBodyServesBothSizesOfOneStationUnlessTheLargeOneIsThereFirst) {
    announce("logo", 3);
    announce("logo", 4);
    EXPECT_EQ(receive("logo", "one body"), 0);
    // Equal names come in no laid-down order. What was written is told, and the large one always is.
    std::vector<std::string> names;
    for (const spi::SpiLogoInfo& logo : reported())
        names.push_back(logo.name);
    std::vector<std::string> sorted = names;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(files(), sorted);
    EXPECT_EQ(content("E1C2210_4.PNG"), "one body");
    ASSERT_FALSE(names.empty());
    EXPECT_EQ(names.back(), "E1C2210_4.PNG");
    EXPECT_EQ(receive("logo", "one body"), 1);  // both are used up in either case
}

TEST_F(Announcements, TheFirstImageUsesAnAnnouncementUp) {
    announce("logo", 4);
    announce("another", 4);
    receive("logo", "first");
    expect_reported({"E1C2210_4.PNG"});
    EXPECT_EQ(receive("logo", "second"), 0);  // the service still has announcements, of other names
    expect_reported({});
    EXPECT_EQ(content("E1C2210_4.PNG"), "first");
    announce("logo", 4);
    receive("logo", "third");
    expect_reported({"E1C2210_4.PNG"});
    EXPECT_EQ(content("E1C2210_4.PNG"), "third");
}

TEST_F(Announcements, AServiceWithNothingLeftRefusesImages) {
    announce("logo", 4);
    EXPECT_EQ(receive("logo", "first"), 0);
    EXPECT_EQ(receive("logo", "second"), 1);
    EXPECT_EQ(receive("other", "second"), 1);
}

TEST_F(Announcements, AServiceThatAnnouncesNothingRefusesImages) {
    announce(std::list<spi::SpiLogoInfo>{});
    EXPECT_EQ(receive("logo", "image"), 1);
}

TEST_F(Announcements, AnEmptyDescriptionForgetsNothing) {
    announce("logo", 4);
    announce(std::list<spi::SpiLogoInfo>{});
    receive("logo", "image");
    expect_reported({"E1C2210_4.PNG"});
}

TEST_F(Announcements, AnnouncedTwiceIsWrittenAndReportedTwice) {
    announce("logo", 4);
    announce("logo", 4);
    EXPECT_EQ(receive("logo", "image"), 0);
    expect_reported({"E1C2210_4.PNG", "E1C2210_4.PNG"});
    expect_files({"E1C2210_4.PNG"});
    EXPECT_EQ(receive("logo", "again"), 1);  // both copies are used up
}

TEST_F(Announcements, WhatIsNeverWrittenIsUsedUpToo) {
    announce("photo", 4, kJpeg);
    announce("tiny", 1);
    announce("huge", 4);
    EXPECT_EQ(receive("photo", "image"), 0);
    EXPECT_EQ(receive("tiny", "image"), 0);
    EXPECT_EQ(receive("huge", std::string(22529, 'x')), 0);
    EXPECT_EQ(receive("huge", "fits"), 1);
    expect_reported({});
    expect_files({});
}

TEST_F(Announcements, AJfifBodyIsWrittenUnderTheAnnouncedPngName) {
    announce("logo", 4);
    EXPECT_EQ(db.handle_bodyimg(image("logo", kJfifBody), body("a JPEG"), data_service), 0);
    expect_reported({"E1C2210_4.PNG"});
    EXPECT_EQ(content("E1C2210_4.PNG"), "a JPEG");
}

TEST_F(Announcements, APngBodyIsNotWrittenUnderAnAnnouncedJpegName) {
    announce("logo", 4, kJpeg);
    EXPECT_EQ(receive("logo", "a PNG"), 0);
    expect_reported({});
    expect_files({});
}

TEST_F(Announcements, OnlyImagesOfSpiServicesAreTaken) {
    announce("logo", 4);
    const auto refused = [&](auto change) {
        spi::MotBodyMetadata m = image("logo");
        change(m);
        EXPECT_FALSE(db.valid_metadata(m));
        EXPECT_EQ(db.handle_bodyimg(m, body("image"), data_service), 1);
    };
    refused([](auto& m) { m.user_application_type = 6; });
    refused([](auto& m) { m.user_application_type = 0; });
    refused([](auto& m) { m.user_application_type = 0x107; });
    refused([](auto& m) { m.content_type = 1; });
    refused([](auto& m) { m.content_type = 7; });
    refused([](auto& m) { m.content_subtype = 0; });
    refused([](auto& m) { m.content_subtype = 2; });
    refused([](auto& m) { m.content_subtype = 4; });
    refused([](auto& m) { m.content_subtype = 0x103; });
    expect_reported({});
    expect_files({});
    EXPECT_TRUE(db.valid_metadata(image("logo", kJfifBody)));
    EXPECT_TRUE(db.valid_metadata(image("logo", kPngBody)));
    EXPECT_EQ(receive("logo", "image"), 0);  // the refused ones have not used it up
    expect_reported({"E1C2210_4.PNG"});
}

TEST_F(Announcements, TheBodyIsTakenOverWhateverHappens) {
    spi::MotBody refused = body("image");
    db.handle_bodyimg(image("logo"), std::move(refused), data_service);
    EXPECT_EQ(refused.size, 0U);
    EXPECT_EQ(refused.data, nullptr);
}

}  // namespace
}  // namespace logo_db

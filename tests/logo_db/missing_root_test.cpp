// A logo root that is not there: what is reported, letter by letter, and that nothing is made.
#include "tests/logo_db/logo_db_fixture.h"

namespace logo_db {
namespace {

class MissingRoot : public LogoDb {
 protected:
    MissingRoot() { spi::SpiLogoData::set_root(missing); }

    static void expect_message(const ZebDebugMessage& m, const std::string& function, int line,
                               const std::string& directory) {
        EXPECT_EQ(m.channel, ZebDebugMessage::kDebug);
        EXPECT_EQ(m.source, "src/logo_db");
        EXPECT_EQ(m.function, function);
        EXPECT_EQ(m.line, line);
        EXPECT_EQ(m.tag, 1);
        EXPECT_EQ(m.text, "Failed: Station Logo path:[" + directory + "]\n");
    }
    void expect_nothing_made() const { EXPECT_FALSE(std::filesystem::exists(missing)); }

    const std::string missing = root / "HdStationLogo";
};

TEST_F(MissingRoot, TheSearchForALargeLogoReportsIt) {
    EXPECT_FALSE(spi::SpiLogoDb::isFindLargeSizeLogo(0xE1, 0xC221, 0, missing));
    const auto messages = debug.take();
    ASSERT_EQ(messages.size(), 1U);
    expect_message(messages[0], "isFindLargeSizeLogo", 164, missing + "/");
    expect_nothing_made();
}

TEST_F(MissingRoot, TheCleanUpReportsIt) {
    EXPECT_FALSE(spi::SpiLogoDb::deleteCorruptedFile(0xE1, 0xC221, 0, 3, missing));
    const auto messages = debug.take();
    ASSERT_EQ(messages.size(), 1U);
    expect_message(messages[0], "deleteCorruptedFile", 204, missing + "/");
    expect_nothing_made();
}

TEST_F(MissingRoot, TheCleanUpsResultIsPassedOn) {
    EXPECT_EQ(db.removeLogo(logo_of(station, kPng, 4, "name"), missing, body("image")), 0);
    EXPECT_EQ(debug.take().size(), 1U);
}

TEST_F(MissingRoot, ASmallLogoReportsBothSteps) {
    announce("logo", 3);
    EXPECT_EQ(receive("logo", "image"), 0);
    const auto messages = debug.take();
    ASSERT_EQ(messages.size(), 2U);
    expect_message(messages[0], "isFindLargeSizeLogo", 164, missing + "/");
    expect_message(messages[1], "deleteCorruptedFile", 204, missing + "/");
    expect_reported({});
    expect_nothing_made();
    EXPECT_EQ(receive("logo", "image"), 1);  // used up
}

TEST_F(MissingRoot, ALargeLogoReportsTheCleanUpOnly) {
    announce("logo", 4);
    receive("logo", "image");
    const auto messages = debug.take();
    ASSERT_EQ(messages.size(), 1U);
    expect_message(messages[0], "deleteCorruptedFile", 204, missing + "/");
    expect_reported({});
}

TEST_F(MissingRoot, WhatIsNeverWrittenReportsNothing) {
    announce("logo", 4, kJpeg);
    receive("logo", "image");
    EXPECT_TRUE(debug.take().empty());
}

TEST_F(MissingRoot, TheNameEndsInTwoSlashesWhenTheRootBringsOne) {
    spi::SpiLogoData::set_root(missing + "/");
    announce("logo", 4);
    receive("logo", "image");
    const auto messages = debug.take();
    ASSERT_EQ(messages.size(), 1U);
    expect_message(messages[0], "deleteCorruptedFile", 204, missing + "//");
}

TEST_F(MissingRoot, ALongNameIsReportedWhole) {
    const std::string directory = missing + std::string(3000, 'x');
    EXPECT_FALSE(spi::SpiLogoDb::isFindLargeSizeLogo(0xE1, 0xC221, 0, directory));
    const auto messages = debug.take();
    ASSERT_EQ(messages.size(), 1U);
    expect_message(messages[0], "isFindLargeSizeLogo", 164, directory + "/");
}

TEST_F(MissingRoot, ThePercentSignsOfANameAreNotTakenForAFormat) {
    EXPECT_FALSE(spi::SpiLogoDb::isFindLargeSizeLogo(0xE1, 0xC221, 0, missing + "%s%n"));
    const auto messages = debug.take();
    ASSERT_EQ(messages.size(), 1U);
    expect_message(messages[0], "isFindLargeSizeLogo", 164, missing + "%s%n/");
}

TEST_F(MissingRoot, ARootThatComesBackIsUsedAgain) {
    announce("logo", 4);
    announce("again", 4);
    receive("logo", "image");
    expect_reported({});
    std::filesystem::create_directory(missing);
    receive("again", "image");
    expect_reported({"E1C2210_4.PNG"});
}

TEST_F(MissingRoot, AnEmptyRootStandsForTheRootDirectoryWhichExists) {
    spi::SpiLogoData::set_root("");
    const spi::ServElemId nobody{0xFEDC, 0xFE, 13};  // no file of the real root directory is called like it
    announce("small", 3, kPng, nobody);
    announce("large", 4, kPng, nobody);
    EXPECT_EQ(receive("small", "image"), 0);
    EXPECT_EQ(receive("large", "image"), 0);
    EXPECT_TRUE(debug.take().empty());
    expect_reported({});
    EXPECT_TRUE(spi::SpiLogoDb::deleteCorruptedFile(0xFE, 0xFEDC, 13, 3, ""));
    EXPECT_TRUE(debug.take().empty());
}

}  // namespace
}  // namespace logo_db

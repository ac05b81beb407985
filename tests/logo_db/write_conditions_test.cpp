// What is written at all, and what is refused without touching the disk.
#include <fcntl.h>
#include <sys/stat.h>

#include "tests/logo_db/logo_db_fixture.h"
#include "tests/logo_db/write_faults.h"

namespace logo_db {
namespace {

class WriteConditions : public LogoDb {
 protected:
    WriteConditions() { write_faults::reset(); }

    static bool write(const spi::SpiLogoInfo& logo, const spi::MotBody& bytes) {
        return spi::SpiLogoData(logo).write_logo(bytes);
    }
    void expect_refused(const spi::SpiLogoInfo& logo, const std::string& bytes = "image") {
        EXPECT_FALSE(write(logo, body(bytes)));
        EXPECT_EQ(write_faults::opens(), 0);
        expect_files({});
    }
};

TEST_F(WriteConditions, APngOfSizeThreeOrFourIsWritten) {
    EXPECT_TRUE(write(logo_of(station, kPng, 4), body("large")));
    EXPECT_TRUE(write(logo_of(station, kPng, 3), body("small")));
    expect_files({"E1C2210_3.PNG", "E1C2210_4.PNG"});
    EXPECT_EQ(content("E1C2210_4.PNG"), "large");
    EXPECT_EQ(content("E1C2210_3.PNG"), "small");
}

TEST_F(WriteConditions, WithoutARootNothingIsWritten) {
    spi::SpiLogoData::set_root("");
    expect_refused(logo_of(station, kPng, 4));
}

TEST_F(WriteConditions, WithoutAServiceIdentifierNothingIsWritten) {
    expect_refused(logo_of({0, 0xE1, 0}, kPng, 4));
}

TEST_F(WriteConditions, WithoutAnEccNothingIsWritten) {
    expect_refused(logo_of({0xC221, 0, 0}, kPng, 4));
}

TEST_F(WriteConditions, OnlyPngIsWritten) {
    expect_refused(logo_of(station, kJpeg, 4));
    expect_refused(logo_of(station, kJpeg, 4), "");
    expect_refused(logo_of(station, 0, 4));
    expect_refused(logo_of(station, 3, 4));
}

TEST_F(WriteConditions, ThirtyTwoBitServicesAreRefused) {
    expect_refused(logo_of({0x10000, 0xE1, 0}, kPng, 4));
    expect_refused(logo_of({0xE1C00221, 0xE1, 0}, kPng, 4));
    EXPECT_TRUE(write(logo_of({0xFFFF, 0xE1, 0}, kPng, 4), body("image")));
    EXPECT_TRUE(write(logo_of({1, 0xE1, 0}, kPng, 4), body("image")));
    expect_files({"E1FFFF0_4.PNG", "E110_4.PNG"});
}

TEST_F(WriteConditions, OtherSizesAreRefused) {
    for (const int size_code : {0, 1, 2, 5, 6, 7, 255})
        expect_refused(logo_of(station, kPng, static_cast<std::uint8_t>(size_code)));
}

TEST_F(WriteConditions, TheLargestBodyHas22528Bytes) {
    expect_refused(logo_of(station, kPng, 4), std::string(22529, 'x'));
    EXPECT_TRUE(write(logo_of(station, kPng, 4), body(std::string(22528, 'x'))));
    EXPECT_EQ(content("E1C2210_4.PNG"), std::string(22528, 'x'));
}

TEST_F(WriteConditions, AnEmptyBodyGivesAnEmptyFile) {
    EXPECT_TRUE(write(logo_of(station, kPng, 4), spi::MotBody()));
    expect_files({"E1C2210_4.PNG"});
    EXPECT_EQ(content("E1C2210_4.PNG"), "");
}

TEST_F(WriteConditions, AnyByteIsWrittenAsItIs) {
    std::string bytes;
    for (int i = 0; i < 256; ++i)
        bytes += static_cast<char>(i);
    EXPECT_TRUE(write(logo_of(station, kPng, 4), body(bytes + "\r\n\n")));
    EXPECT_EQ(content("E1C2210_4.PNG"), bytes + "\r\n\n");
}

TEST_F(WriteConditions, TheContentNameHasNoPartInThePath) {
    EXPECT_TRUE(write(logo_of(station, kPng, 4, "../../etc/evil"), body("image")));
    EXPECT_TRUE(write(logo_of(station, kPng, 3, ""), body("image")));
    expect_files({"E1C2210_3.PNG", "E1C2210_4.PNG"});
}

TEST_F(WriteConditions, OneWriteTakesTheWholeBody) {
    EXPECT_TRUE(write(logo_of(station, kPng, 4), body(std::string(22528, 'x'))));
    EXPECT_EQ(write_faults::writes(), 1);
    EXPECT_EQ(write_faults::left_open(), 0);
}

TEST_F(WriteConditions, TheRootIsFollowedByASeparatorOfItsOwn) {
    spi::SpiLogoData::set_root(root.path().string() + "/");  // as the host-facing layer makes it
    EXPECT_TRUE(write(logo_of(station, kPng, 4), body("image")));
    expect_files({"E1C2210_4.PNG"});
}

TEST_F(WriteConditions, TheFileIsForEveryoneWhomTheHostsMaskLeaves) {
    const mode_t before = umask(0);
    EXPECT_TRUE(write(logo_of(station, kPng, 4), body("image")));
    umask(before);
    struct stat status {};
    ASSERT_EQ(stat((root / "E1C2210_4.PNG").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0666U);  // as any stream makes it: other programs show the logos
}

TEST_F(WriteConditions, TheFileDoesNotLeakIntoTheHostsChildren) {
    EXPECT_TRUE(write(logo_of(station, kPng, 4), body("image")));
    EXPECT_NE(write_faults::last_flags() & O_CLOEXEC, 0);
}

}  // namespace
}  // namespace logo_db

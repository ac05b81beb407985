// The clean-up after a failed write: when it acts, and what it deletes.
#include "tests/logo_db/logo_db_fixture.h"

namespace logo_db {
namespace {

class Cleaning : public LogoDb {
 protected:
    std::string directory() const { return root.path().string(); }
    int remove(const spi::SpiLogoInfo& logo, std::size_t body_size = 100) {
        return db.removeLogo(logo, directory(), body(std::string(body_size, 'x')));
    }
    static spi::SpiLogoInfo own(std::uint8_t size_code = 4) {
        return logo_of(station, kPng, size_code, "E1C2210_4.PNG");
    }
    void expect_left_alone(const spi::SpiLogoInfo& logo, std::size_t body_size = 100) {
        const std::vector<std::string> before = files();
        EXPECT_EQ(remove(logo, body_size), 0);
        EXPECT_EQ(files(), before);
    }
};

TEST_F(Cleaning, DeletesEveryFileOfTheStationAndSize) {
    for (const char* name :
         {"E1C2210_3.PNG", "E1C2210_3.JPG", "E1C2210_3.", "E1C2210_3", "E1C2210_30.PNG", "E1C2210_3x"})
        put(name);
    const std::vector<std::string> others{"E1C2210_4.PNG",  "E1C2220_3.PNG", "E1C2211_3.PNG", "E2C2210_3.PNG",
                                          "XE1C2210_3.PNG", "E1C2210_.PNG",  "E1C2210.PNG",   "e1c2210_3.PNG",
                                          "E1C22103.PNG",   "_3.PNG"};
    for (const std::string& name : others)
        put(name);
    EXPECT_TRUE(spi::SpiLogoDb::deleteCorruptedFile(0xE1, 0xC221, 0, 3, directory()));
    expect_files(others);
}

TEST_F(Cleaning, SucceedsWithNothingToDelete) {
    put("E1C2220_3.PNG");
    EXPECT_TRUE(spi::SpiLogoDb::deleteCorruptedFile(0xE1, 0xC221, 0, 3, directory()));
    expect_files({"E1C2220_3.PNG"});
}

TEST_F(Cleaning, DeletesManyFiles) {
    for (int i = 0; i < 500; ++i)
        put("E1C2210_3." + std::to_string(i));
    EXPECT_TRUE(spi::SpiLogoDb::deleteCorruptedFile(0xE1, 0xC221, 0, 3, directory()));
    expect_files({});
}

TEST_F(Cleaning, NamesTheSizeCodeInLowerCaseHexadecimal) {
    put("E1C2210_a.PNG");
    put("E1C2210_A.PNG");
    put("E1C2210_10.PNG");
    EXPECT_TRUE(spi::SpiLogoDb::deleteCorruptedFile(0xE1, 0xC221, 0, 10, directory()));
    expect_files({"E1C2210_10.PNG", "E1C2210_A.PNG"});
}

TEST_F(Cleaning, PacksTheStationAsTheSearchDoes) {
    put("E1C2215_4.PNG");
    EXPECT_TRUE(spi::SpiLogoDb::deleteCorruptedFile(0x1E1, 0x1C221, 0x25, 4, directory()));
    expect_files({});
}

TEST_F(Cleaning, OfAShortServiceIdentifierMissesItsOwnFile) {
    put("E12210_4.PNG");   // what is written for service 221
    put("E102210_4.PNG");  // what is searched for
    EXPECT_EQ(remove(logo_of({0x221, 0xE1, 0}, kPng, 4, "E12210_4.PNG")), 1);
    expect_files({"E12210_4.PNG"});
}

TEST_F(Cleaning, LeavesDirectoriesStanding) {
    std::filesystem::create_directory(root / "E1C2210_4.dir");
    put("E1C2210_4.PNG");
    EXPECT_EQ(remove(own()), 1);
    expect_files({"E1C2210_4.dir"});
}

TEST_F(Cleaning, ActsOnWhatAWriteCouldHaveBegun) {
    put("E1C2210_3.PNG");
    put("E1C2210_4.PNG");
    EXPECT_EQ(remove(own(4)), 1);
    expect_files({"E1C2210_3.PNG"});
    EXPECT_EQ(remove(own(3)), 1);
    expect_files({});
}

TEST_F(Cleaning, LeavesAloneWhatIsNeverWritten) {
    for (const char* name : {"E1C2210_0.PNG", "E1C2210_1.PNG", "E1C2210_2.PNG", "E1C2210_3.PNG",
                             "E1C2210_4.PNG", "E1C2210_5.PNG", "E100000_4.PNG", "C2210_4.PNG"})
        put(name);
    spi::SpiLogoInfo logo = own();
    logo.name.clear();
    expect_left_alone(logo);
    for (const int format : {0, 1, 3, 255}) {
        logo = own();
        logo.image_format = static_cast<std::uint8_t>(format);
        expect_left_alone(logo);
    }
    for (const std::uint32_t sid : {0x0U, 0x10000U, 0x1C221U, 0xE1C0C221U}) {
        logo = own();
        logo.service.sid = sid;
        expect_left_alone(logo);
    }
    logo = own();
    logo.service.ecc = 0;
    expect_left_alone(logo);
    for (const int size_code : {0, 1, 2, 5, 255}) {
        expect_left_alone(own(static_cast<std::uint8_t>(size_code)));
    }
    expect_left_alone(own(), 22529);
}

TEST_F(Cleaning, ActsUpToTheLargestBody) {
    put("E1C2210_4.PNG");
    EXPECT_EQ(remove(own(), 22528), 1);
    expect_files({});
}

TEST_F(Cleaning, ActsForTheHighestSixteenBitService) {
    put("E1FFFF0_4.PNG");
    EXPECT_EQ(remove(logo_of({0xFFFF, 0xE1, 0}, kPng, 4, "name")), 1);
    expect_files({});
}

TEST_F(Cleaning, OfABodyThatIsTooLargeKeepsTheOlderFile) {
    put("E1C2210_4.PNG");
    announce("logo", 4);
    receive("logo", std::string(22529, 'x'));
    expect_reported({});
    EXPECT_EQ(content("E1C2210_4.PNG"), "old");
}

}  // namespace
}  // namespace logo_db

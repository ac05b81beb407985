// What stands at a logo's name already: an older logo, a link, a pipe, a directory.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/logo_db/logo_db_fixture.h"
#include "tests/logo_db/write_faults.h"

namespace logo_db {
namespace {

namespace fs = std::filesystem;

class StandingFiles : public LogoDb {
 protected:
    StandingFiles() { announce("logo", 4); }
    static constexpr const char* name = "E1C2210_4.PNG";
};

TEST_F(StandingFiles, AnOlderLogoIsOverwrittenInPlace) {
    put(name, std::string(5000, 'o'));
    struct stat before {};
    ASSERT_EQ(stat((root / name).c_str(), &before), 0);
    receive("logo", "new");
    struct stat after {};
    ASSERT_EQ(stat((root / name).c_str(), &after), 0);
    EXPECT_EQ(content(name), "new");  // truncated, too
    EXPECT_EQ(before.st_ino, after.st_ino);
    expect_files({name});
    expect_reported({name});
}

TEST_F(StandingFiles, ALinkIsNotWrittenThrough) {
    const temporary_directory elsewhere;
    std::ofstream(elsewhere / "target") << "untouched";
    fs::create_symlink(elsewhere / "target", root / name);
    receive("logo", "new");
    expect_reported({});
    std::ifstream in(elsewhere / "target");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), "untouched");
    expect_files({});  // the link went with the clean-up after the failure, its target did not
}

TEST_F(StandingFiles, ADanglingLinkMakesNoFileElsewhere) {
    const temporary_directory elsewhere;
    fs::create_symlink(elsewhere / "target", root / name);
    receive("logo", "new");
    expect_reported({});
    EXPECT_TRUE(fs::is_empty(elsewhere.path()));
}

TEST_F(StandingFiles, APipeWithoutAReaderDoesNotHoldTheStoreUp) {
    ASSERT_EQ(mkfifo((root / name).c_str(), 0600), 0);
    receive("logo", "new");
    expect_reported({});
    expect_files({});
}

TEST_F(StandingFiles, APipeWithAReaderGetsNothing) {
    ASSERT_EQ(mkfifo((root / name).c_str(), 0600), 0);
    const int reader = open((root / name).c_str(), O_RDONLY | O_NONBLOCK);
    ASSERT_NE(reader, -1);
    receive("logo", "new");
    char buffer[16];
    EXPECT_EQ(read(reader, buffer, sizeof buffer), 0);
    close(reader);
    expect_reported({});
    EXPECT_EQ(write_faults::left_open(), 0);
}

TEST_F(StandingFiles, ADirectoryIsLeftStanding) {
    fs::create_directory(root / name);
    receive("logo", "new");
    expect_reported({});
    expect_files({name});
    EXPECT_TRUE(fs::is_directory(root / name));
}

TEST_F(StandingFiles, ARootBehindALinkIsFine) {
    const temporary_directory elsewhere;
    fs::create_directory_symlink(root.path(), elsewhere / "link");
    spi::SpiLogoData::set_root(elsewhere / "link");
    receive("logo", "new");
    expect_reported({name});
    EXPECT_EQ(content(name), "new");
}

TEST_F(StandingFiles, ARootThatIsAFileFailsTheWrite) {
    put("file");
    spi::SpiLogoData::set_root(root / "file");
    receive("logo", "new");
    expect_reported({});
    EXPECT_EQ(content("file"), "old");
}

}  // namespace
}  // namespace logo_db

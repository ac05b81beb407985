// What stands at a logo's name when it arrives: never written through, never waited for. The failed write's
// clean-up removes it, as it removes every file of that station and size, so that the next logo succeeds; a
// directory stays.
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "tests/faults/logo_reception.h"

namespace {

namespace fs = std::filesystem;
using lines = std::vector<std::string>;

class StandingAtTheName : public LogoReception {
 protected:
    const std::string at = root + "/" + kFile;

    void SetUp() override { std::ofstream(outside + "/target") << "untouched"; }

    // Nothing told, nothing outside touched; the root holds `left`. The next logo succeeds if nothing is
    // left.
    void expect_refused(const entries_t& left) {
        const entries_t before = tree(outside);
        announce_and_receive();
        EXPECT_EQ(reported(), lines{});
        EXPECT_EQ(messages(), lines{});
        EXPECT_EQ(tree(root), left);
        EXPECT_EQ(tree(outside), before);
        announce_and_receive();
        EXPECT_EQ(reported(), left.empty() ? lines{kReported} : lines{});
        EXPECT_EQ(tree(root), left.empty() ? (entries_t{{kFile, on_air::png_text()}}) : left);
        EXPECT_EQ(tree(outside), before);
    }
};

TEST_P(StandingAtTheName, ALinkToAFileIsRemovedAndItsTargetIsNot) {
    fs::create_symlink(outside + "/target", at);
    expect_refused({});
}

TEST_P(StandingAtTheName, ALinkToALogoBesideItIsRemovedAndTheLogoIsNot) {
    std::ofstream(root + "/E1C2240_4.PNG") << "another station's";
    fs::create_symlink("E1C2240_4.PNG", at);
    announce_and_receive();
    EXPECT_EQ(reported(), lines{});
    EXPECT_EQ(tree(root), (entries_t{{"E1C2240_4.PNG", "another station's"}}));
}

TEST_P(StandingAtTheName, ADanglingLinkIsRemovedAndMakesNoFile) {
    fs::create_symlink(outside + "/nothing", at);
    expect_refused({});
}

TEST_P(StandingAtTheName, APipeIsRemovedAndNotWaitedFor) {
    ASSERT_EQ(mkfifo(at.c_str(), 0600), 0);
    expect_refused({});
}

TEST_P(StandingAtTheName, ADeviceIsRemovedAndNotWrittenTo) {
    if (mknod(at.c_str(), S_IFCHR | 0600, makedev(1, 3)) != 0)
        GTEST_SKIP() << "this machine permits no device files: " << std::strerror(errno);
    expect_refused({});
}

TEST_P(StandingAtTheName, AnEmptyDirectoryStays) {
    fs::create_directory(at);
    expect_refused({{kFile, "directory"}});
}

TEST_P(StandingAtTheName, ADirectoryStaysWithAllThatIsInIt) {
    fs::create_directory(at);
    std::ofstream(at + "/E1C2210_4.PNG") << "inside";
    expect_refused({{kFile, "directory"}, {std::string(kFile) + "/" + kFile, "inside"}});
}

TEST_P(StandingAtTheName, AFileWithASecondNameIsOverwrittenUnderBoth) {
    fs::create_hard_link(outside + "/target", at);  // a regular file: written in place, as it is laid down
    announce_and_receive();
    EXPECT_EQ(reported(), lines{kReported});
    EXPECT_EQ(tree(outside), (entries_t{{"target", on_air::png_text()}}));
}

INSTANTIATE_TEST_SUITE_P(Of, StandingAtTheName, testing::Values(surface::kCore, surface::kWrapper),
                         &surface_name);

}  // namespace

// A logo root that goes, comes back, or becomes something else while the library runs.
#include <sys/stat.h>

#include "tests/faults/logo_reception.h"
#include "tests/support/bound_by_permissions.h"

namespace {

namespace fs = std::filesystem;
using lines = std::vector<std::string>;

class LogoRoot : public LogoReception {};

TEST_P(LogoRoot, ThatIsRemovedIsReportedAndUsedAgainWhenItIsBack) {
    fs::remove_all(root);
    announce_and_receive(false);
    announce_and_receive(true);
    EXPECT_EQ(messages(), (lines{missing_root(164), missing_root(204), missing_root(204)}));
    EXPECT_EQ(reported(), lines{});
    EXPECT_FALSE(fs::exists(root));
    fs::create_directory(root);
    announce_and_receive(true);
    EXPECT_EQ(reported(), lines{kReported});
    EXPECT_EQ(messages(), lines{});
    EXPECT_EQ(tree(root), (entries_t{{kFile, on_air::png_text()}}));
}

// A file's name with a slash behind it cannot be looked up, so it is missing too.
TEST_P(LogoRoot, ThatBecomesAFileCountsAsMissingAndTheFileStaysAsItIs) {
    fs::remove_all(root);
    std::ofstream(root) << "a file";
    announce_and_receive(false);
    announce_and_receive(true);
    EXPECT_EQ(messages(), (lines{missing_root(164), missing_root(204), missing_root(204)}));
    EXPECT_EQ(reported(), lines{});
    std::ifstream in(root);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), "a file");
}

TEST_P(LogoRoot, ThatBecomesALinkToAnotherDirectoryIsThatDirectory) {
    announce_and_receive(true);
    fs::rename(root, here.at("/before"));
    fs::create_directory_symlink(outside, root);
    announce_and_receive(true);
    EXPECT_EQ(reported(), (lines{kReported, kReported}));
    EXPECT_EQ(messages(), lines{});
    EXPECT_EQ(tree(outside), (entries_t{{kFile, on_air::png_text()}}));
    EXPECT_EQ(tree(here.at("/before")), (entries_t{{kFile, on_air::png_text()}}));
}

TEST_P(LogoRoot, ThatBecomesALinkToNothingCountsAsMissing) {
    fs::remove_all(root);
    fs::create_directory_symlink(here.at("/gone"), root);
    announce_and_receive(true);
    EXPECT_EQ(messages(), lines{missing_root(204)});
    EXPECT_EQ(reported(), lines{});
    EXPECT_FALSE(fs::exists(here.at("/gone")));
}

TEST_P(LogoRoot, ThatBecomesALoopOfLinksCountsAsMissing) {
    fs::remove_all(root);
    fs::create_directory_symlink(root, root);
    announce_and_receive(true);
    EXPECT_EQ(messages(), lines{missing_root(204)});
    EXPECT_EQ(reported(), lines{});
}

// The server's threads are made while the right of root is gone.
class ForbiddenLogoRoot : protected bound_by_permissions, public LogoReception {};

TEST_P(ForbiddenLogoRoot, FailsTheWriteAndKeepsWhatIsThere) {
    std::ofstream(root + "/other") << "other";
    ASSERT_EQ(chmod(root.c_str(), 0555), 0);
    const bool forbidden = holds_for(root);
    announce_and_receive(true);
    ASSERT_EQ(chmod(root.c_str(), 0755), 0);
    if (!forbidden) GTEST_SKIP() << "this machine lets root keep its right over files";
    EXPECT_EQ(reported(), lines{});
    EXPECT_EQ(messages(), lines{});
    EXPECT_EQ(tree(root), (entries_t{{"other", "other"}}));
}

INSTANTIATE_TEST_SUITE_P(Of, LogoRoot, testing::Values(surface::kCore, surface::kWrapper), &surface_name);

INSTANTIATE_TEST_SUITE_P(Of, ForbiddenLogoRoot, testing::Values(surface::kCore, surface::kWrapper),
                         &surface_name);

}  // namespace

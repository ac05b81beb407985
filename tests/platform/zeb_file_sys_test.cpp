#include "platform/zeb_file_sys.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "testkit/temporary_directory.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct FileSys : testing::Test {
    temporary_directory directory;

    void make(const std::string& name) { std::ofstream(directory / name) << "x"; }

    static std::vector<std::string> found(const std::string& pattern) {
        std::vector<std::string> names;
        ZebFileSys search;
        std::string name;
        for (bool more = search.FindFirst(pattern, name); more; more = search.FindNext(name))
            names.push_back(name);
        std::sort(names.begin(), names.end());
        return names;
    }
};

TEST_F(FileSys, KnowsWhatExists) {
    make("file");
    EXPECT_TRUE(ZebFileSys::IsExist(directory / "file"));
    EXPECT_TRUE(ZebFileSys::IsExist(directory.path().string()));
    EXPECT_TRUE(ZebFileSys::IsExist(directory.path().string() + "/"));
    EXPECT_FALSE(ZebFileSys::IsExist(directory / "missing"));
    EXPECT_FALSE(ZebFileSys::IsExist(directory / "file/"));
    EXPECT_FALSE(ZebFileSys::IsExist(""));
}

// Where times have 32 bits, looking at such a file fails: the build asks for 64 on every machine.
static_assert(sizeof(time_t) == 8, "built without _TIME_BITS=64");
TEST_F(FileSys, KnowsWhatIsDatedBeyond2038) {
    make("file");
    constexpr long long kIn2100 = 4102444800;
    const timespec in_2100{static_cast<time_t>(kIn2100), 0};
    const timespec times[] = {in_2100, in_2100};
    ASSERT_EQ(utimensat(AT_FDCWD, (directory / "file").c_str(), times, 0), 0);
    EXPECT_TRUE(ZebFileSys::IsExist(directory / "file"));
}

TEST_F(FileSys, CreatesParentDirectoriesWhereTheyAreAskedFor) {
    EXPECT_TRUE(ZebFileSys::CreateDirectory(directory / "a/b/c", true));
    EXPECT_TRUE(std::filesystem::is_directory(directory / "a/b/c"));
    EXPECT_TRUE(ZebFileSys::CreateDirectory(directory / "d/e/", true));
    EXPECT_TRUE(std::filesystem::is_directory(directory / "d/e"));
    EXPECT_FALSE(ZebFileSys::CreateDirectory(directory / "x/y", false));
    EXPECT_FALSE(std::filesystem::exists(directory / "x"));
}

TEST_F(FileSys, CreatingWhatIsThereAlreadySucceeds) {
    EXPECT_TRUE(ZebFileSys::CreateDirectory(directory / "a", true));
    EXPECT_TRUE(ZebFileSys::CreateDirectory(directory / "a", true));
    EXPECT_TRUE(ZebFileSys::CreateDirectory(directory / "a", false));
}

TEST_F(FileSys, ADirectoryCannotBeCreatedOverOrBelowAFile) {
    make("file");
    EXPECT_FALSE(ZebFileSys::CreateDirectory(directory / "file", true));
    EXPECT_FALSE(ZebFileSys::CreateDirectory(directory / "file/below", true));
}

TEST_F(FileSys, DeletesFiles) {
    make("file");
    EXPECT_TRUE(ZebFileSys::Delete(directory / "file", true));
    EXPECT_FALSE(std::filesystem::exists(directory / "file"));
    EXPECT_FALSE(ZebFileSys::Delete(directory / "file", true));
}

TEST_F(FileSys, FindsByStarAndQuestionMark) {
    for (const char* name : {"E1C2210_3.png", "E1C2210_4.png", "E1C2210_4.jpg", "E1C2211_4.png", "_4."})
        make(name);
    EXPECT_THAT(found(directory / "E1C2210_4.*"), ElementsAre("E1C2210_4.jpg", "E1C2210_4.png"));
    EXPECT_THAT(found(directory / "E1C221?_4.png"), ElementsAre("E1C2210_4.png", "E1C2211_4.png"));
    EXPECT_THAT(found(directory / "*_3*"), ElementsAre("E1C2210_3.png"));
    EXPECT_THAT(found(directory / "E1C2210_3.png"), ElementsAre("E1C2210_3.png"));
    EXPECT_THAT(found(directory / "*"), testing::SizeIs(5));
    EXPECT_THAT(found(directory / "**4*.*g"), ElementsAre("E1C2210_4.jpg", "E1C2210_4.png", "E1C2211_4.png"));
    EXPECT_THAT(found(directory / "_4.*"), ElementsAre("_4."));
    EXPECT_THAT(found(directory / "_4.?"), IsEmpty());
    EXPECT_THAT(found(directory / "E1C2210"), IsEmpty());
    EXPECT_THAT(found(directory / "1C2210_3.png"), IsEmpty());
}

TEST_F(FileSys, IsCaseSensitive) {
    make("e1c2210_4.png");
    EXPECT_THAT(found(directory / "E1C2210_4.*"), IsEmpty());
    EXPECT_THAT(found(directory / "e1c2210_4.*"), ElementsAre("e1c2210_4.png"));
}

TEST_F(FileSys, TakesTheDirectoryLiterally) {
    std::filesystem::create_directory(directory / "lo*os");
    std::filesystem::create_directory(directory / "logos");
    make("lo*os/a.png");
    make("logos/b.png");
    EXPECT_THAT(found(directory / "lo*os/*.png"), ElementsAre("a.png"));
    EXPECT_THAT(found(directory / "lo?os/*.png"), IsEmpty());
}

TEST_F(FileSys, OtherCharactersStandForThemselves) {
    make("a.b");
    make("axb");
    make("[ab]");
    EXPECT_THAT(found(directory / "a.b"), ElementsAre("a.b"));
    EXPECT_THAT(found(directory / "[ab]"), ElementsAre("[ab]"));
    EXPECT_THAT(found(directory / "[a]*"), IsEmpty());
}

TEST_F(FileSys, DeletingWhatIsFoundDoesNotDisturbTheSearch) {
    for (int i = 0; i < 300; ++i)
        make("file" + std::to_string(i));
    ZebFileSys search;
    std::string name;
    int count = 0;
    for (bool more = search.FindFirst(directory / "file*", name); more; more = search.FindNext(name)) {
        ++count;
        EXPECT_TRUE(ZebFileSys::Delete(directory / name, true));
    }
    EXPECT_EQ(count, 300);
    EXPECT_TRUE(std::filesystem::is_empty(directory.path()));
}

TEST_F(FileSys, AMissingDirectoryHasNoFiles) {
    ZebFileSys search;
    std::string name = "untouched";
    EXPECT_FALSE(search.FindFirst(directory / "missing/*", name));
    EXPECT_FALSE(search.FindNext(name));
    EXPECT_EQ(name, "untouched");
}

TEST_F(FileSys, ASearchMayBeBegunAnew) {
    make("a");
    make("b");
    ZebFileSys search;
    std::string name;
    EXPECT_TRUE(search.FindFirst(directory / "*", name));
    EXPECT_TRUE(search.FindFirst(directory / "a", name));
    EXPECT_EQ(name, "a");
    EXPECT_FALSE(search.FindNext(name));
    EXPECT_FALSE(search.FindNext(name));
}

TEST_F(FileSys, LeavesNoDirectoryOpen) {
    make("a");
    const auto open_descriptors = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    };
    const auto before = open_descriptors();
    {
        ZebFileSys search;
        std::string name;
        search.FindFirst(directory / "*", name);
        EXPECT_EQ(open_descriptors(), before);
    }
    EXPECT_EQ(open_descriptors(), before);
}

}  // namespace

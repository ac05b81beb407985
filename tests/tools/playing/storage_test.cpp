#include "tools/playing/storage.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "tests/tools/files/files.h"
#include "tools/files/created_directories.h"

namespace {

namespace fs = std::filesystem;
using dabspi::created_directories;
using dabspi::storage;

// TMPDIR as a test needs it, and as it was afterwards.
class temporary_root {
 public:
    explicit temporary_root(const std::string& path) {
        if (const char* before = std::getenv("TMPDIR")) before_ = before;
        ::setenv("TMPDIR", path.c_str(), 1);
    }
    temporary_root(const temporary_root&) = delete;
    temporary_root& operator=(const temporary_root&) = delete;
    ~temporary_root() {
        if (before_.empty())
            ::unsetenv("TMPDIR");
        else
            ::setenv("TMPDIR", before_.c_str(), 1);
    }

 private:
    std::string before_;
};

TEST(Storage, ATemporaryDirectoryIsRemovedWithItsContent) {
    const temporary_directory root;
    const temporary_root set(root.path().string());
    {
        const storage store = storage::temporary();
        EXPECT_EQ(fs::path(store.path()).parent_path(), fs::canonical(root.path()));
        fs::create_directories(store.logo_root());
        write_file(root, "x", "x");
        fs::copy(root.path() / "x", fs::path(store.logo_root()) / "E1C2210_3.PNG");
        fs::remove(root.path() / "x");
    }
    EXPECT_TRUE(fs::is_empty(root.path()));
}

TEST(Storage, ATemporaryDirectoryIsKeptOnDemand) {
    const temporary_directory root;
    const temporary_root set(root.path().string());
    std::string path;
    {
        storage store = storage::temporary();
        store.keep();
        path = store.path();
    }
    EXPECT_TRUE(fs::is_directory(path));
}

TEST(Storage, ARemovedTemporaryDirectoryTakesNoLinksTargetWithIt) {
    const temporary_directory root;
    const temporary_root set(root.path().string());
    const std::string kept = write_file(root, "mine/kept", "x");
    {
        const storage store = storage::temporary();
        fs::create_directory_symlink(root.path() / "mine", fs::path(store.path()) / "HdStationLogo");
    }
    EXPECT_TRUE(fs::exists(kept));
}

TEST(Storage, AMissingTemporaryRootSaysWhatToDo) {
    const temporary_directory root;
    const temporary_root set(root / "missing");
    try {
        storage::temporary();
        FAIL() << "no error";
    } catch (const std::runtime_error& error) {
        EXPECT_EQ(std::string(error.what()),
                  "cannot make a temporary directory below " + (root / "missing") +
                      ": No such file or directory; set TMPDIR, or give a directory "
                      "with --storage");
    }
}

TEST(Storage, TheUsersDirectoryIsMadeAndStays) {
    const temporary_directory root;
    {
        const storage store = storage::at(root / "a/b");
        EXPECT_EQ(store.path(), (fs::canonical(root.path()) / "a/b").string());
        EXPECT_EQ(store.logo_root(), store.path() + "/HdStationLogo/");
    }
    EXPECT_TRUE(fs::is_directory(root / "a/b"));
}

TEST(Storage, TheUsersDirectoryMayBeThereAndEndInASeparator) {
    const temporary_directory root;
    EXPECT_EQ(storage::at(root / "").path(), fs::canonical(root.path()).string());
    EXPECT_EQ(storage::at(root / "new/").path(), (fs::canonical(root.path()) / "new").string());
}

TEST(Storage, AFileIsNoDirectory) {
    const temporary_directory root;
    write_file(root, "file", "x");
    EXPECT_THROW(storage::at(root / "file"), std::runtime_error);
    EXPECT_THROW(storage::at(root / "file/below"), std::runtime_error);
}

TEST(AddedDirectories, RemovesWhatHasAppearedInnermostFirst) {
    const temporary_directory root;
    created_directories added({root / "temp", root / "temp/dab"});
    fs::create_directories(root / "temp/dab");
    added.remove();
    EXPECT_FALSE(fs::exists(root / "temp"));
}

TEST(AddedDirectories, KeepsWhatWasThere) {
    const temporary_directory root;
    fs::create_directories(root / "temp");
    created_directories added({root / "temp", root / "temp/dab"});
    fs::create_directories(root / "temp/dab");
    added.remove();
    EXPECT_TRUE(fs::exists(root / "temp"));
    EXPECT_FALSE(fs::exists(root / "temp/dab"));
}

TEST(AddedDirectories, KeepsWhatSomebodyUses) {
    const temporary_directory root;
    created_directories added({root / "temp", root / "temp/dab"});
    write_file(root, "temp/dab/E1C2210_3.PNG", "x");
    added.remove();
    EXPECT_TRUE(fs::exists(root / "temp/dab/E1C2210_3.PNG"));
}

TEST(AddedDirectories, DoesNotMindThatNothingHasAppeared) {
    const temporary_directory root;
    created_directories added({root / "temp", root / "temp/dab"});
    added.remove();
    EXPECT_TRUE(fs::is_empty(root.path()));
}

}  // namespace

#include "tools/files/written_file.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/tools/files/files.h"

namespace {

using dabspi::check::write_whole_file;

TEST(WrittenFile, ReplacesWhatStoodThere) {
    const temporary_directory directory;
    const std::string path = write_file(directory, "page.html", "old");
    EXPECT_EQ(write_whole_file(path, "new"), "");
    EXPECT_EQ(read_file(path), "new");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory.path()), {}), 1);
}

TEST(WrittenFile, GoesThroughALink) {
    const temporary_directory directory;
    const std::string path = write_file(directory, "page.html", "old");
    const auto link = directory.path() / "link.html";
    std::filesystem::create_symlink(path, link);
    EXPECT_EQ(write_whole_file(link.string(), "new"), "");
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(read_file(path), "new");
}

TEST(WrittenFile, SaysWhyItCannotBeWritten) {
    const temporary_directory directory;
    EXPECT_EQ(write_whole_file((directory.path() / "missing" / "page.html").string(), "x"),
              "No such file or directory");
    EXPECT_EQ(write_whole_file("/dev/full", "x"), "No space left on device");
    EXPECT_NE(write_whole_file(directory.path().string(), "x"), "");
}

}  // namespace

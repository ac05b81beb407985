#include "tools/files/whole_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <thread>

#include "tests/tools/files/files.h"

namespace {

using dabspi::write_whole_file;

TEST(WholeFile, ReplacesWhatStoodThere) {
    const temporary_directory directory;
    const std::string path = write_file(directory, "page.html", "old");
    EXPECT_EQ(write_whole_file(path, "new"), "");
    EXPECT_EQ(read_file(path), "new");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory.path()), {}), 1);
}

TEST(WholeFile, KeepsThePermissionsOfTheFileThatItReplaces) {
    using std::filesystem::perms;
    const temporary_directory directory;
    const std::string path = write_file(directory, "page.html", "old");
    const perms kept = perms::owner_read | perms::owner_write | perms::group_read;
    std::filesystem::permissions(path, kept);
    EXPECT_EQ(write_whole_file(path, "new"), "");
    EXPECT_EQ(std::filesystem::status(path).permissions(), kept);
}

TEST(WholeFile, ReplacesRegularFilesOnly) {
    const temporary_directory directory;
    const std::string path = write_file(directory, "page.html", "old");
    const auto link = directory.path() / "link.html";
    std::filesystem::create_symlink(path, link);
    EXPECT_EQ(write_whole_file(link.string(), "new"), "it is a symbolic link; name the file itself");
    EXPECT_EQ(read_file(path), "old");
    const std::string pipe = (directory.path() / "pipe").string();
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(write_whole_file(pipe, "x"), "it is not a regular file");  // and nobody waits for a reader
    EXPECT_EQ(write_whole_file("/dev/full", "x"), "it is not a regular file");
    EXPECT_EQ(write_whole_file(directory.path().string(), "x"), "Is a directory");
    EXPECT_EQ(write_whole_file(directory.path().string() + "/", "x"), "this is not a file's name");
    EXPECT_EQ(write_whole_file("", "x"), "this is not a file's name");
}

TEST(WholeFile, LeavesNothingBehindWhenItFails) {
    const temporary_directory directory;
    EXPECT_EQ(write_whole_file((directory.path() / "missing" / "page.html").string(), "x"),
              "No such file or directory");
    const std::string path = write_file(directory, "page.html", "old");
    struct rlimit before {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handler = ::signal(SIGXFSZ, SIG_IGN);
    const struct rlimit small { 10, before.rlim_max };
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const std::string error = write_whole_file(path, std::string(100, 'x'));
    ::setrlimit(RLIMIT_FSIZE, &before);
    ::signal(SIGXFSZ, handler);
    EXPECT_EQ(error, "File too large");
    EXPECT_EQ(read_file(path), "old");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory.path()), {}), 1);
}

TEST(WholeFile, OfTwoThatWriteAtOnceIsWhole) {
    const temporary_directory directory;
    const std::string path = (directory.path() / "page.html").string();
    const auto write_often = [&](char letter) {
        for (int i = 0; i < 50; ++i)
            EXPECT_EQ(write_whole_file(path, std::string(20000, letter)), "");
    };
    std::thread other(write_often, 'b');
    write_often('a');
    other.join();
    const std::string content = read_file(path);
    EXPECT_EQ(content, std::string(20000, content.at(0)));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory.path()), {}), 1);
}

TEST(WholeFileWriter, NothingIsSeenBeforeItIsCommitted) {
    const temporary_directory directory;
    const std::string path = write_file(directory, "a.eti", "old");
    const auto files = [&] {
        return std::distance(std::filesystem::directory_iterator(directory.path()), {});
    };
    {
        dabspi::whole_file_writer given_up(path);
        EXPECT_EQ(given_up.write("new"), "");
        EXPECT_EQ(read_file(path), "old");
    }
    EXPECT_EQ(read_file(path), "old");
    EXPECT_EQ(files(), 1);
    dabspi::whole_file_writer file(path);
    EXPECT_EQ(file.write("ne"), "");
    EXPECT_EQ(file.write("w"), "");
    EXPECT_EQ(file.commit(), "");
    EXPECT_EQ(read_file(path), "new");
    EXPECT_EQ(files(), 1);
}

TEST(WholeFileWriter, RefusesWhatIsNoRegularFile) {
    const temporary_directory directory;
    EXPECT_NE(dabspi::whole_file_writer(directory.path().string()).error(), "");
    EXPECT_NE(dabspi::whole_file_writer((directory.path() / "no" / "such" / "folder").string()).error(), "");
}

}  // namespace

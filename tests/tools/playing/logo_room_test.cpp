#include "tools/playing/logo_room.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>

#include "tests/tools/files/files.h"

namespace {

using dabspi::require_logo_room;

std::string fault(const std::string& path, std::size_t size) {
    try {
        require_logo_room(path, size);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return {};
}

TEST(LogoRoom, IsTriedAndLeavesNothing) {
    const temporary_directory files;
    EXPECT_EQ(fault(files.path().string(), 200000), "");
    std::filesystem::create_directory(files.path() / "HdStationLogo");
    EXPECT_EQ(fault(files.path().string(), 1), "");
    EXPECT_TRUE(std::filesystem::is_empty(files.path() / "HdStationLogo"));
    EXPECT_EQ(fault((files.path() / "none").string(), 0), "") << "without images there is nothing to try";
}

TEST(LogoRoom, WhatIsMissingIsSaid) {
    const temporary_directory files;
    EXPECT_THAT(
        fault((files.path() / "none").string(), 1),
        testing::HasSubstr("logos cannot be written to " + (files.path() / "none/HdStationLogo").string() +
                           ": No such file or directory"));
    // A disk that takes no more, as far as this process is concerned.
    const auto before = std::signal(SIGXFSZ, SIG_IGN);
    rlimit usual{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &usual), 0);
    rlimit small = usual;
    small.rlim_cur = 1000;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const std::string text = fault(files.path().string(), 100000);
    ::setrlimit(RLIMIT_FSIZE, &usual);
    std::signal(SIGXFSZ, before);
    EXPECT_THAT(text, testing::HasSubstr("HdStationLogo: File too large; what a receiver is told of logos"));
    EXPECT_TRUE(std::filesystem::is_empty(files.path()));
}

TEST(LogoRoom, IsThatOfTheLargestImage) {
    const dabspi::recording read = dabspi::parse_recording(
        R"({"call":"FeedMotBody","content_type":2,"content_subtype":3,"content_name":"a","sid":1,"body":"YWJjZA=="})"
        "\n"
        R"({"call":"FeedMotBody","content_type":7,"content_subtype":0,"content_name":"b","sid":1,"body":"YWJjZGVm"})",
        "a.jsonl", "");
    EXPECT_EQ(largest_image(read), 4u);
}

}  // namespace

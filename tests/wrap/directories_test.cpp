// The two directories: which are made, in which order, and which the core is told of.
#include <algorithm>
#include <utility>

#include "spi_wrap/to_spi_server.h"
#include "tests/wrap/recording_core.h"
#include "tests/wrap/wrap_fixture.h"

namespace {

using strings = std::vector<std::string>;

class Directories : public Wrapped {
 protected:
    Directories() { recording_core::forget(); }

    // Makes a server with this storage path, and gives the roots that the core got.
    std::pair<std::string, std::string> roots_for(const std::string& storage_path) {
        put_block(block_with(storage_path));
        here.take_calls();
        const spi_wrap::toSpiServer server(nullptr);
        calls_.clear();
        for (const std::string& call : here.take_calls())
            if (call.find("/dev/shm") == std::string::npos &&
                (call.compare(0, 5, "stat ") == 0 || call.compare(0, 6, "mkdir ") == 0))
                calls_.push_back(call);
        EXPECT_EQ(recording_core::record().made.size(), 1U);
        const recording_core::made_t made = recording_core::record().made.back();
        recording_core::forget();
        return {made.temp_root, made.logo_root};
    }
    void expect_roots(const std::string& storage_path, const std::string& logo_root) {
        EXPECT_EQ(roots_for(storage_path), (std::pair<std::string, std::string>{"/temp/dab", logo_root}));
        EXPECT_TRUE(debug.take().empty());
    }
    const strings& calls() const { return calls_; }

 private:
    strings calls_;
};

TEST_F(Directories, TheLogoRootIsTheStoragePathAndAFixedName) {
    expect_roots("/mnt/data", "/mnt/data/HdStationLogo/");
    EXPECT_TRUE(is_directory("/mnt/data/HdStationLogo"));
    EXPECT_TRUE(is_directory("/temp/dab"));
}

TEST_F(Directories, AnEmptyStoragePathPutsTheLogoRootAtTheTop) {
    expect_roots("", "/HdStationLogo/");
    EXPECT_TRUE(is_directory("/HdStationLogo"));
}

TEST_F(Directories, NoSeparatorIsRemoved) {
    expect_roots("/mnt/data/x/", "/mnt/data/x//HdStationLogo/");
    EXPECT_TRUE(is_directory("/mnt/data/x/HdStationLogo"));
}

TEST_F(Directories, TheTempRootIsSeenToBeforeTheLogoRoot) {
    std::filesystem::create_directories(here.at("/mnt/data"));
    roots_for("/mnt/data");
    const auto position = [this](const std::string& call) {
        return std::find(calls().begin(), calls().end(), call) - calls().begin();
    };
    ASSERT_LT(position("mkdir /mnt/data/HdStationLogo/"), static_cast<long>(calls().size()));
    EXPECT_LT(position("stat /temp/dab"), position("mkdir /temp/dab"));
    EXPECT_LT(position("mkdir /temp/dab"), position("stat /mnt/data/HdStationLogo/"));
    EXPECT_LT(position("stat /mnt/data/HdStationLogo/"), position("mkdir /mnt/data/HdStationLogo/"));
}

TEST_F(Directories, ThoseThatExistAreNotMadeAgain) {
    std::filesystem::create_directories(here.at("/temp/dab"));
    std::filesystem::create_directories(here.at("/mnt/data/HdStationLogo"));
    expect_roots("/mnt/data", "/mnt/data/HdStationLogo/");
    EXPECT_EQ(calls(), (strings{"stat /temp/dab", "stat /mnt/data/HdStationLogo/"}));
}

TEST_F(Directories, WhatIsInThemStays) {
    std::filesystem::create_directories(here.at("/mnt/data/HdStationLogo"));
    std::ofstream(here.at("/mnt/data/HdStationLogo/E1C2210_4.PNG")) << "old";
    roots_for("/mnt/data");
    EXPECT_EQ(file_content(here.at("/mnt/data/HdStationLogo/E1C2210_4.PNG")), "old");
}

TEST_F(Directories, MissingParentsAreMade) {
    expect_roots("/mnt/data/a/b/c", "/mnt/data/a/b/c/HdStationLogo/");
    EXPECT_TRUE(is_directory("/mnt/data/a/b/c/HdStationLogo"));
}

TEST_F(Directories, ALogoRootThatCannotBeMadeBecomesTheTempRoot) {
    std::filesystem::create_directories(here.at("/mnt/data"));
    here.faults.mkdir_refused = {"/mnt/data/HdStationLogo", "/mnt/data/HdStationLogo/"};
    expect_roots("/mnt/data", "/temp/dab");
    EXPECT_TRUE(is_directory("/temp/dab"));
    EXPECT_FALSE(is_directory("/mnt/data/HdStationLogo"));
}

TEST_F(Directories, ALogoRootBehindAFileBecomesTheTempRoot) {
    std::ofstream(here.at("/mnt/data")) << "a file";
    expect_roots("/mnt/data", "/temp/dab");
}

TEST_F(Directories, AnEndlessStoragePathBecomesTheTempRoot) {
    expect_roots("/mnt/data/" + std::string(kPayloadBytes - 10, 'p'), "/temp/dab");
}

TEST_F(Directories, ATempRootThatCannotBeMadeIsNotLookedAt) {
    here.faults.mkdir_refused = {"/temp", "/temp/dab"};
    expect_roots("/mnt/data", "/mnt/data/HdStationLogo/");
    EXPECT_FALSE(is_directory("/temp"));
}

TEST_F(Directories, NeitherCanBeMadeAndTheCoreIsMadeAllTheSame) {
    here.faults.mkdir_refused = {"/temp", "/temp/dab", "/mnt/data"};
    expect_roots("/mnt/data", "/temp/dab");
}

}  // namespace

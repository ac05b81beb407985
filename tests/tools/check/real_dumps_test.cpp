// Dumps of real broadcasts' objects, in the layouts of receivers. The material is not part of the project:
// DABSPI_REAL names a folder that holds encoded/si-nrk-f601.bin and objects/logos.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <regex>

#include "tests/tools/check/broadcast.h"
#include "tests/tools/files/files.h"
#include "tools/playing/storage.h"

namespace {

using namespace check_test;
using namespace dabspi::check;

class RealDumps : public testing::Test {
 protected:
    void SetUp() override {
        const char* const folder = std::getenv("DABSPI_REAL");
        if (folder == nullptr) GTEST_SKIP() << "DABSPI_REAL names no folder of real material";
        object_ = read_file(std::string(folder) + "/encoded/si-nrk-f601.bin");
        image_ = read_file(std::string(folder) + "/objects/logos/qt-dab-6.9-128x128.png");
        ASSERT_FALSE(object_.empty() || image_.empty());
        const std::regex url("http://static\\.nonrk\\.radio\\.ebu\\.io/128x128/[0-9a-f-]+\\.png");
        for (std::sregex_iterator at(object_.begin(), object_.end(), url), end; at != end; ++at)
            urls_.insert(at->str());
        ASSERT_GT(urls_.size(), 10U);
    }

    // All logos of 128x128 are sent, and saved under these names.
    check_report dump(const std::function<std::string(const std::string&)>& saved_as) {
        write_file(directory_, "ee2f601.EIB", object_);
        for (const std::string& each : urls_)
            write_file(directory_, saved_as(each), image_);
        const dabspi::storage location = dabspi::storage::temporary();
        return check_input(read_inputs(directory_.path().string(), {}).front(), severity::note,
                           location.path());
    }

    void expect_all_matched(const check_report& of) {
        EXPECT_EQ(find(of, finding_code::logo_not_announced), nullptr);
        std::size_t used = 0;
        for (const image_arrival& each : of.past.images)
            used += each.uses.empty() ? 0 : 1;
        EXPECT_EQ(used, urls_.size());
        for (const finding& each : of.findings) {
            if (each.code != finding_code::logo_not_sent) continue;
            EXPECT_EQ(each.text.find("/128x128/"), std::string::npos) << each.text;
        }
    }

    temporary_directory directory_;
    std::string object_;
    std::string image_;
    std::set<std::string> urls_;
};

std::string underscores(const std::string& name) {
    return std::regex_replace(name, std::regex("[/:*?\"<>|\\\\]"), "_");
}

TEST_F(RealDumps, WithUnderscores) {
    expect_all_matched(dump(underscores));
}

TEST_F(RealDumps, WithFolders) {
    expect_all_matched(dump([](const std::string& url) { return "http_/" + url.substr(7); }));
}

TEST_F(RealDumps, WithAPrefix) {
    unsigned transport_id = 0;
    expect_all_matched(dump([&](const std::string& url) {
        return "20190204_130000_" + std::to_string(transport_id++) + "_" + underscores(url);
    }));
}

TEST_F(RealDumps, WithTheLastComponentOnly) {
    expect_all_matched(dump([](const std::string& url) { return url.substr(url.rfind('/') + 1); }));
}

}  // namespace

// Recordings of multiplexes that nobody here made: the calls of a receiver, the same from each container.
//
// DABSPI_REAL names the folder that has them in its folder "air", with expected.json, which says what comes
// out.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>

#include "tests/tools/air/mot/sha256.h"
#include "tools/air/calls/multiplex_calls.h"
#include "tools/air/container/open_frames.h"

namespace {

using nlohmann::json;

// Names and checksums of what is fed; minutes as they are set.
struct real_calls {
    std::multiset<std::string> objects;
    std::vector<std::string> minutes;
    bool begins_with_service = false;
};

real_calls calls_of_file(const std::string& path) {
    dabspi::air::opened_frames in = dabspi::air::open_frames(path);
    EXPECT_NE(in.frames, nullptr) << in.error;
    dabspi::air::calls_options options;
    options.which = dabspi::air::delivery::once;
    dabspi::air::multiplex_calls calls(*in.frames, options);
    real_calls made;
    bool first = true;
    while (const auto each = calls.next()) {
        if (first) made.begins_with_service = std::holds_alternative<dabspi::set_current_service>(each->what);
        first = false;
        if (const auto* const now = std::get_if<dabspi::set_date_time>(&each->what))
            made.minutes.push_back(now->text());
        if (const auto* const fed = std::get_if<dabspi::feed_mot_body>(&each->what))
            made.objects.insert(fed->content_name + " " + air_test::sha256(*fed->body));
    }
    return made;
}

class CallsOfRealMultiplexes : public ::testing::TestWithParam<const char*> {};

TEST_P(CallsOfRealMultiplexes, FeedTheObjectsThatTheyAreKnownToHold) {
    const char* const folder = std::getenv("DABSPI_REAL");
    if (folder == nullptr) GTEST_SKIP() << "DABSPI_REAL names no folder with recordings of other people's";
    const std::string air = std::string(folder) + "/air/";
    std::ifstream list(air + "expected.json");
    ASSERT_TRUE(list) << air << "expected.json cannot be read";
    const json expected = json::parse(list).at(GetParam());
    std::multiset<std::string> objects;
    for (const json& each : expected.at("objects"))
        objects.insert(each.at("name").get<std::string>() + " " + each.at("sha256").get<std::string>());
    const real_calls made = calls_of_file(air + GetParam());
    EXPECT_TRUE(made.begins_with_service);
    EXPECT_EQ(made.objects, objects);
    EXPECT_EQ(made.minutes, expected.at("clock").get<std::vector<std::string>>());
}

INSTANTIATE_TEST_SUITE_P(Files, CallsOfRealMultiplexes,
                         ::testing::Values("slovenia-r1-2017.eti", "nrk.streamed.eti", "nrk.edi",
                                           "heart.framed.eti", "heart.pft", "heart.pcap"),
                         [](const auto& of) {
                             std::string name = of.param;
                             for (char& c : name)
                                 if (c == '-' || c == '.') c = '_';
                             return name;
                         });

}  // namespace

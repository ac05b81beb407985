// Recordings of multiplexes that nobody here made, in all their containers: what a scan says of them.
//
// DABSPI_REAL names the folder that has them in its folder "air", with expected.json, which says what comes
// out.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>

#include "tools/air/container/open_frames.h"
#include "tools/scan/multiplex_scan.h"
#include "tools/scan/report.h"

namespace {

using namespace dabspi;
using nlohmann::json;

json report_of(const std::string& path) {
    air::opened_frames in = air::open_frames(path);
    EXPECT_NE(in.frames, nullptr) << in.error;
    scan::multiplex_scan scan;
    for (air::frame each; in.frames->next(each);)
        scan.take(each);
    scan.finish();
    scan::scanned_multiplex found = scan.result();
    found.form = in.found;
    found.container = in.frames->statistics();
    return json::parse(json_report(found));
}

// By transport identifier: kind, name and size of every object that was received whole.
std::map<int, json> objects_of(const json& report) {
    std::map<int, json> all;
    for (const json& each : report.at("spi").at(0).at("carousel").at("objects"))
        if (each.at("times") != 0)
            all[each.at("transport_id")] = {each.at("content_type"), each.at("content_subtype"),
                                            each.at("name"), each.at("size")};
    return all;
}

std::map<int, json> expected_objects(const json& expected) {
    std::map<int, json> all;
    for (const json& each : expected.at("objects"))
        all[each.at("tid")] = {each.at("type"), each.at("subtype"), each.at("name"), each.at("size")};
    return all;
}

class ScannedRealMultiplexes : public ::testing::TestWithParam<const char*> {};

TEST_P(ScannedRealMultiplexes, ShowWhatTheyAreKnownToHold) {
    const char* const folder = std::getenv("DABSPI_REAL");
    if (folder == nullptr) GTEST_SKIP() << "DABSPI_REAL names no folder with recordings of other people's";
    const std::string air = std::string(folder) + "/air/";
    std::ifstream list(air + "expected.json");
    ASSERT_TRUE(list) << air << "expected.json cannot be read";
    const json expected = json::parse(list).at(GetParam());
    const json report = report_of(air + GetParam());
    EXPECT_EQ(report.at("frames"), expected.at("frames"));
    EXPECT_EQ(report.at("ensemble").at("eid"), expected.at("ensemble").at("eid"));
    EXPECT_EQ(report.at("ensemble").at("ecc"), expected.at("ensemble").at("ecc"));
    EXPECT_EQ(report.at("services").size(), expected.at("services").size());
    const json& clock = expected.at("clock");
    EXPECT_EQ(report.at("clock").at("first"), clock.front());
    EXPECT_EQ(report.at("clock").at("last"), clock.back());
    ASSERT_EQ(report.at("spi").size(), expected.at("spi").size());
    const json& spi = report.at("spi").at(0);
    const json& component = expected.at("spi").at(0);
    EXPECT_EQ(spi.at("sid"), component.at("sid"));
    EXPECT_EQ(spi.at("scids"), component.at("scids"));
    EXPECT_EQ(spi.at("sub_channel"), component.at("subch"));
    EXPECT_EQ(spi.at("address"), component.at("address"));
    EXPECT_EQ(spi.at("fec"), component.at("fec"));
    EXPECT_EQ(objects_of(report), expected_objects(expected));
    const json& directories = spi.at("carousel").at("directories");
    ASSERT_EQ(directories.size(), expected.at("directories").size());
    for (std::size_t i = 0; i < directories.size(); ++i) {
        EXPECT_EQ(directories[i].at("transport_id"), expected.at("directories")[i].at("tid"));
        EXPECT_EQ(directories[i].at("objects"), expected.at("directories")[i].at("objects"));
    }
}

INSTANTIATE_TEST_SUITE_P(Files, ScannedRealMultiplexes,
                         ::testing::Values("slovenia-r1-2017.eti", "nrk.streamed.eti", "nrk.edi",
                                           "heart.framed.eti", "heart.pft", "heart.pcap"),
                         [](const auto& of) {
                             std::string name = of.param;
                             for (char& c : name)
                                 if (c == '-' || c == '.') c = '_';
                             return name;
                         });

}  // namespace

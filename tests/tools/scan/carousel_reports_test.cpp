// What a scan says of carousels: complete, in part, empty, announced and not sent.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "testkit/multiplex/eti_writer.h"
#include "testkit/on_air/spi_multiplex.h"
#include "tools/air/container/open_frames.h"
#include "tools/scan/multiplex_scan.h"
#include "tools/scan/report.h"

namespace {

namespace kit = carousel_kit;
namespace mb = multiplex_builder;
using namespace dabspi;
using nlohmann::json;

kit::object object_of(unsigned id, const std::string& name, std::size_t size = 500) {
    kit::object made;
    made.transport_id = id;
    made.name = name;
    made.body = kit::bytes(size, static_cast<std::uint8_t>(id));
    return made;
}

const std::vector<kit::object> kObjects = {object_of(1, "w20260302dC221.EHB"), object_of(2, "a logo", 2000)};

on_air::multiplex sending(const kit::bytes& stream, bool fec = false) {
    on_air::multiplex sent;
    sent.spi.emplace_back();
    sent.sub_channels.push_back({30, 192, stream, fec});
    return sent;
}

scan::scanned_multiplex scanned(const std::vector<mb::logical_frame>& frames) {
    const mb::bytes file = mb::raw_eti(frames);
    air::opened_frames in = air::open_frames(std::make_unique<air::memory_source>(file), "test.eti");
    scan::multiplex_scan scan;
    for (air::frame each; in.frames->next(each);)
        scan.take(each);
    scan.finish();
    scan::scanned_multiplex found = scan.result();
    found.name = "test.eti";
    found.form = in.found;
    found.container = in.frames->statistics();
    return found;
}

scan::scanned_multiplex scanned(const on_air::multiplex& sent, unsigned frames = 0) {
    return scanned(on_air::frames_of(sent, frames == 0 ? on_air::frames_needed(sent) + 20 : frames));
}

json carousel_of(const scan::scanned_multiplex& found) {
    return json::parse(json_report(found)).at("spi").at(0).at("carousel");
}

std::string verdict_of(const scan::scanned_multiplex& found) {
    std::string text;
    const json carousel = carousel_of(found);
    for (const json& each : carousel.at("verdict"))
        text += each.get<std::string>() + "\n";
    return text;
}

TEST(ScanCarousels, TellsEveryObject) {
    const auto round = kit::directory_round(9, kObjects);
    std::vector<kit::bytes> groups = round;
    kit::append(groups, round);
    const auto found = scanned(sending(on_air::stream_of(5, groups)));
    const json carousel = carousel_of(found);
    EXPECT_EQ(carousel.at("verdict").at(0), "complete: all objects were received, 2");
    EXPECT_EQ(carousel.at("mode"), "directory");
    EXPECT_EQ(carousel.at("objects_received"), 2);
    const json& logo = carousel.at("objects").at(1);
    EXPECT_EQ(logo.at("name"), "a logo");
    EXPECT_EQ(logo.at("size"), 2000);
    EXPECT_EQ(logo.at("segments"), 20);
    EXPECT_EQ(logo.at("segments_received"), 20);
    EXPECT_EQ(logo.at("times"), 2);
    EXPECT_GT(logo.at("share_percent"), 10);
    EXPECT_GT(logo.at("mean_interval_seconds"), 0.1);
    EXPECT_EQ(carousel.at("cycle_seconds"), logo.at("mean_interval_seconds"));
    const std::string text = text_report(found);
    EXPECT_NE(text.find("programme information"), std::string::npos) << text;
    EXPECT_NE(text.find("20/20"), std::string::npos) << text;
    EXPECT_EQ(text.find("dropped or lost"), std::string::npos) << text;
}

TEST(ScanCarousels, NamesTheObjectsThatAreMissing) {
    auto groups = kit::directory_round(9, kObjects);
    groups.resize(groups.size() - 8);
    const auto found = scanned(sending(on_air::stream_of(5, groups)));
    EXPECT_EQ(verdict_of(found), "1 of 2 objects; these are missing: \"a logo\" (12 of 20 segments)\n");
}

TEST(ScanCarousels, SaysWhenOnlyPaddingIsSent) {
    EXPECT_EQ(verdict_of(scanned(sending({}), 40)), "announced, but only padding is sent\n");
}

TEST(ScanCarousels, SaysWhenNothingIsSentOnTheAddress) {
    const auto sent = sending(on_air::stream_of(6, kit::directory_round(9, kObjects)));
    EXPECT_EQ(verdict_of(scanned(sent)), "announced, but nothing is sent on its address\n");
}

TEST(ScanCarousels, SaysWhenTheDirectoryIsEmpty) {
    const auto sent = sending(on_air::stream_of(5, kit::directory_round(9, {})));
    EXPECT_EQ(verdict_of(scanned(sent)), "the directory is empty\n");
}

TEST(ScanCarousels, SaysWhenSignalledFecIsNotSent) {
    auto sent = sending(on_air::stream_of(5, kit::directory_round(9, kObjects)));
    sent.sub_channels[0].fec = true;
    const std::string verdict = verdict_of(scanned(sent, 120));
    EXPECT_NE(verdict.find("forward error correction is signalled, but not sent"), std::string::npos)
        << verdict;
}

TEST(ScanCarousels, TellsWhatEachDirectoryChanged) {
    std::vector<kit::bytes> groups = kit::directory_round(9, kObjects);
    kit::append(groups, kit::directory_round(10, {kObjects[0], object_of(3, "another logo")}));
    const json carousel = carousel_of(scanned(sending(on_air::stream_of(5, groups))));
    ASSERT_EQ(carousel.at("directories").size(), 2U);
    const json& second = carousel.at("directories").at(1);
    EXPECT_EQ(second.at("added").at("names"), json::array({"another logo"}));
    EXPECT_EQ(second.at("removed").at("names"), json::array({"a logo"}));
    EXPECT_EQ(second.at("changed").at("count"), 0);
    EXPECT_EQ(carousel.at("gone").at(0).at("name"), "a logo");
}

TEST(ScanCarousels, ListsEveryComponentOfACarouselThatSeveralShare) {
    auto sent = sending(on_air::stream_of(5, kit::directory_round(9, kObjects)));
    sent.spi.push_back({0xC222, 1, 7, 30, 5, "With a guide", 0});
    const auto found = scanned(sent);
    const json report = json::parse(json_report(found));
    ASSERT_EQ(report.at("spi").size(), 2U);
    EXPECT_EQ(report.at("spi").at(0).at("sid"), "E1C00098");
    EXPECT_EQ(report.at("spi").at(1).at("sid"), "0000C222");
    EXPECT_EQ(report.at("spi").at(1).at("scids"), 1);
    EXPECT_NE(text_report(found).find("the same carousel as that of E1C00098"), std::string::npos);
}

TEST(ScanCarousels, CountsWhatWasDroppedByItsCause) {
    auto frames = on_air::frames_of(sending(on_air::stream_of(5, kit::directory_round(9, kObjects))), 40);
    frames[4].sub_channels[0].content[30] ^= 1;
    const json carousel = carousel_of(scanned(frames));
    EXPECT_EQ(carousel.at("sub_channel_packets").at("dropped").at("wrong_crc"), 2);
    EXPECT_GT(carousel.at("sub_channel_packets").at("dropped").at("lost_packets"), 0);
}

}  // namespace

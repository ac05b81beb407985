// dabspi scan, as a user runs it.
#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <nlohmann/json.hpp>

#include "testkit/multiplex/capture_writer.h"
#include "testkit/multiplex/edi_writer.h"
#include "testkit/multiplex/eti_writer.h"
#include "testkit/multiplex/fic_builder.h"
#include "testkit/temporary_directory.h"
#include "tests/tools/command_line/run_command.h"

namespace {

namespace mb = multiplex_builder;
using nlohmann::json;

// A service with audio, one with SPI, and a clock that passes midnight in the middle.
std::vector<mb::logical_frame> small_multiplex() {
    std::vector<mb::logical_frame> frames;
    for (std::uint16_t i = 0; i < 60; ++i) {
        mb::logical_frame each;
        each.count = i;
        const std::vector<mb::bytes> first = {mb::fig_0_0(0xC185, i), mb::fig_0_1_long(30, 0, 0, 2, 12),
                                              mb::fig_0_2(0xE1C00098, {{3, 7}}), mb::fig_0_3(7, 30, 5)};
        const std::vector<mb::bytes> second = {mb::fig_0_13(0xE1C00098, 0, {{7, {0x01}}}),
                                               mb::fig_0_14(30, 1), mb::fig_0_9(2, 0xE1),
                                               mb::fig_0_10(61109, i < 30 ? 22U : 23U, i < 30 ? 59U : 0U)};
        const std::vector<mb::bytes> labels = {mb::ensemble_label(0xC185, "Ensemble"),
                                               mb::service_label(0xE1C00098, "Guide")};
        each.fic = mb::fic(i % 2 == 0 ? first : i % 4 == 1 ? second : labels);
        each.sub_channels = {{30, 0, 0x22, mb::bytes(24)}};
        frames.push_back(each);
    }
    return frames;
}

std::string whole_text(const mb::bytes& file) {
    return {file.begin(), file.end()};
}

finished_command scan(const std::vector<std::string>& arguments, const mb::bytes& input) {
    command_input how;
    how.arguments = {"scan"};
    how.arguments.insert(how.arguments.end(), arguments.begin(), arguments.end());
    how.arguments.emplace_back("-");
    how.standard_input = whole_text(input);
    return run_dabspi(how);
}

TEST(ScanCommand, TellsWhereTheSpiIs) {
    const finished_command got = scan({}, mb::raw_eti(small_multiplex()));
    EXPECT_EQ(got.status, 0) << got.err;
    EXPECT_NE(got.out.find("<stdin>: ETI(NI), raw\n  ensemble    C185, ECC E1  Ensemble\n"),
              std::string::npos)
        << got.out;
    EXPECT_NE(
        got.out.find("E1C00098.0  Guide: sub-channel 30, address 5, 16 kbit/s, FEC, announced in frame 1\n"),
        std::string::npos)
        << got.out;
    EXPECT_EQ(got.out.find("Lost, damaged"), std::string::npos) << got.out;
}

TEST(ScanCommand, GivesTheSameForEveryContainer) {
    const auto frames = small_multiplex();
    std::vector<mb::bytes> packets;
    for (std::uint16_t i = 0; i < frames.size(); ++i)
        packets.push_back(mb::af_packet(frames[i], i));
    json first;
    for (const mb::bytes& file :
         {mb::raw_eti(frames), mb::streamed_eti(frames), mb::framed_eti(frames), mb::af_stream(frames),
          mb::pf_stream(frames), mb::pcap_file(mb::datagrams_of(packets))}) {
        const finished_command got = scan({"--json"}, file);
        ASSERT_EQ(got.status, 0) << got.err;
        json report = json::parse(got.out);
        ASSERT_EQ(report["spi"].size(), 1U);
        EXPECT_EQ(report["spi"][0]["sid"], "E1C00098");
        EXPECT_EQ(report["spi"][0]["scids"], 0);
        EXPECT_EQ(report["spi"][0]["sub_channel"], 30);
        EXPECT_EQ(report["spi"][0]["address"], 5);
        EXPECT_EQ(report["spi"][0]["fec"], 1);
        EXPECT_EQ(report["frames"], 60);
        report.erase("form");
        report.erase("flows");
        if (first.is_null()) first = report;
        EXPECT_EQ(report, first);
    }
}

TEST(ScanCommand, RefusesWhatIsNoMultiplexAndSaysWhatItIs) {
    const finished_command xml = scan({}, {'<', 'e', 'p', 'g', '/', '>'});
    EXPECT_EQ(xml.status, 2);
    EXPECT_EQ(xml.err,
              "dabspi: <stdin>: it looks like an XML document; taken are ETI(NI) (raw, streamed, framed), "
              "EDI (AF packets, PF "
              "fragments), and packet captures of EDI\n");
    const temporary_directory directory;
    const finished_command folder = run_dabspi({{"scan", directory.path().string()}});
    EXPECT_EQ(folder.status, 2);
    EXPECT_NE(folder.err.find("it looks like a folder"), std::string::npos);
    EXPECT_EQ(run_dabspi({{"scan", directory / "none"}}).status, 2);
}

TEST(ScanCommand, ListsTheFlowsOfACaptureAndReadsTheOneChosen) {
    const auto frames = small_multiplex();
    std::vector<mb::bytes> packets;
    for (std::uint16_t i = 0; i < frames.size(); ++i)
        packets.push_back(mb::af_packet(frames[i], i));
    auto datagrams = mb::datagrams_of(packets, 12001);
    const auto others = mb::datagrams_of({packets.begin(), packets.begin() + 20}, 12002);
    datagrams.insert(datagrams.end(), others.begin(), others.end());
    const mb::bytes file = mb::pcap_file(datagrams);
    const finished_command first = scan({"--json"}, file);
    EXPECT_EQ(json::parse(first.out)["frames"], 60);
    EXPECT_NE(first.err.find("Choose with --flow from 239.1.2.3:12001 239.1.2.3:12002"), std::string::npos)
        << first.err;
    const finished_command second = scan({"--json", "--flow", "12002"}, file);
    EXPECT_EQ(json::parse(second.out)["frames"], 20);
    EXPECT_EQ(second.err, "");
    const finished_command none = scan({"--flow", "9"}, file);
    EXPECT_EQ(none.status, 2);
    EXPECT_NE(none.err.find("no flow of EDI goes to 9; there are 239.1.2.3:12001"), std::string::npos)
        << none.err;
}

TEST(ScanCommand, CountsWhatIsLost) {
    auto frames = small_multiplex();
    frames.erase(frames.begin() + 40);
    mb::bytes file = mb::raw_eti(frames);
    file[10 * 6144 + 100] ^= 1;
    const json report = json::parse(scan({"--json"}, file).out);
    EXPECT_EQ(report["frames_missing"], 1);
    EXPECT_EQ(report["counters"]["body_crc_wrong"], 1);
    EXPECT_EQ(report["counters"]["gaps"], 1);
}

}  // namespace

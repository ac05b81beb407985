// Recordings of multiplexes that nobody here made: from the sub-channel's bytes to the objects that must come
// out.
//
// DABSPI_REAL names the folder that has them in its folder "air", with expected.json, which says what comes
// out. The few lines that take sub-channels out of ETI frames are enough for whole files that begin with a
// frame.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>

#include "tests/tools/air/mot/received_objects.h"
#include "tests/tools/air/mot/sha256.h"
#include "tools/air/packets/packet_decoder.h"

namespace {

namespace kit = carousel_kit;
using namespace dabspi::air;
using nlohmann::json;

kit::bytes read_bytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    EXPECT_TRUE(in) << path;
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::vector<byte_view> frames_of(const std::string& form, const kit::bytes& file) {
    std::vector<byte_view> frames;
    std::size_t at = form == "framed" ? 4 : 0;
    while (at + 2 < file.size()) {
        const std::size_t size = form == "raw" ? 6144 : file[at] + std::size_t{256} * file[at + 1];
        if (form != "raw") at += 2;
        frames.push_back(byte_view(file).part(at, size));
        at += size;
    }
    return frames;
}

byte_view sub_channel_of(byte_view frame, unsigned id) {
    const std::size_t streams = frame[5] & 0x7F;
    std::size_t at = 8 + 4 * streams + 4 + ((frame[5] & 0x80) != 0 ? 96 : 0);
    for (std::size_t i = 0; i < streams; ++i) {
        const std::size_t size = (frame.number(8 + 4 * i + 2, 2) & 0x3FF) * 8;
        if (frame[8 + 4 * i] >> 2 == static_cast<int>(id)) return frame.part(at, size);
        at += size;
    }
    return {};
}

struct one_address final : data_group_sink {
    void data_group(std::uint16_t address, byte_view group) override {
        if (address == wanted) played.carousel.take(group, frame);
    }
    unsigned wanted = 0;
    std::uint64_t frame = 0;
    air_test::played_carousel played{delivery::once};
};

std::string hex(const std::vector<std::uint8_t>& bytes) {
    std::string text;
    for (const unsigned byte : bytes) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", byte);
        text += digits;
    }
    return text;
}

json reported(const air_test::received_object& object) {
    json entry = {{"tid", object.transport_id},
                  {"type", object.header.content_type},
                  {"subtype", object.header.content_subtype},
                  {"name", object.name},
                  {"name_charset", object.header.name_charset},
                  {"size", object.body.size()},
                  {"sha256", air_test::sha256(object.body)}};
    if (!object.header.scope_id.empty()) entry["scope_id"] = hex(object.header.scope_id);
    return entry;
}

json reported(const directory_version& version) {
    json entry = {{"tid", version.transport_id},
                  {"compressed", version.compressed},
                  {"objects", version.objects},
                  {"period_tenths", version.period_tenths},
                  {"segment_size", version.segment_size}};
    for (const auto& [id, value] : version.parameters) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", unsigned{id});
        entry["parameters"][digits] = hex(value);
    }
    return entry;
}

class RealMultiplexes : public ::testing::TestWithParam<const char*> {};

TEST_P(RealMultiplexes, GiveTheObjectsAndDirectoriesThatTheyAreKnownToHold) {
    const char* const folder = std::getenv("DABSPI_REAL");
    if (folder == nullptr) GTEST_SKIP() << "DABSPI_REAL names no folder with recordings of other people's";
    const std::string air = std::string(folder) + "/air/";
    std::ifstream list(air + "expected.json");
    ASSERT_TRUE(list) << air << "expected.json cannot be read";
    const json expected = json::parse(list).at(GetParam());
    const json& component = expected.at("spi").at(0);

    const kit::bytes file = read_bytes(air + GetParam());
    const std::vector<byte_view> frames = frames_of(expected.at("form"), file);
    ASSERT_EQ(frames.size(), expected.at("frames"));
    one_address chain;
    chain.wanted = component.at("address");
    packet_decoder packets(chain, component.at("fec") == 1 ? packet_fec::rs_12_9 : packet_fec::none);
    unsigned before = frames.front()[4];
    for (const byte_view& frame : frames) {
        const byte_view bytes = sub_channel_of(frame, component.at("subch"));
        for (unsigned count = (before + 1) % 250; chain.frame != 0 && count != frame[4];
             count = (count + 1) % 250) {
            packets.missing(bytes.size());
            ++chain.frame;
        }
        before = frame[4];
        packets.feed(bytes);
        ++chain.frame;
    }
    packets.finish();
    chain.played.carousel.finish();

    json objects = json::array();
    for (const auto& object : chain.played.sink.all)
        objects.push_back(reported(object));
    EXPECT_EQ(objects, expected.at("objects"));
    const carousel_statistics statistics = chain.played.carousel.statistics();
    json directories = json::array();
    for (const auto& version : statistics.directories)
        directories.push_back(reported(version));
    EXPECT_EQ(directories, expected.at("directories"));
    std::uint64_t dropped = 0;
    for (unsigned cause = 0; cause < static_cast<unsigned>(carousel_drop::count); ++cause)
        if (cause != static_cast<unsigned>(carousel_drop::unlisted))
            dropped += statistics.counts.of(static_cast<carousel_drop>(cause));
    EXPECT_EQ(dropped, 0U);
    RecordProperty("packets", std::to_string(packets.counts().packets));
    std::cout << GetParam() << ": " << packets.counts().packets << " packets, " << statistics.counts.groups
              << " data groups, " << statistics.counts.objects << " objects received, "
              << chain.played.sink.all.size() << " handed on; " << packets.counts().of(packet_drop::wrong_crc)
              << " cells with a wrong CRC, " << packets.counts().of(packet_drop::missing_cell) << " missing, "
              << packets.counts().of(packet_drop::lost_packets) << " groups with lost packets; FEC sets "
              << packets.counts().fec_sets << ", used " << packets.counts().fec_sets_used << ", repaired "
              << packets.counts().fec_sets_repaired << "\n";
}

INSTANTIATE_TEST_SUITE_P(Files, RealMultiplexes,
                         ::testing::Values("slovenia-r1-2017.eti", "nrk.streamed.eti", "heart.framed.eti"),
                         [](const auto& of) {
                             return std::string(of.param).substr(0,
                                                                 std::string(of.param).find_first_of("-."));
                         });

}  // namespace

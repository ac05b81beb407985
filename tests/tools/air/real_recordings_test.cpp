// Recordings that nobody here made: what their folder's expected.json says of form, frames, ensemble,
// services, SPI and clock comes out. DABSPI_REAL names a folder with the folder `air` in it.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "tools/air/container/open_frames.h"
#include "tools/air/fic/fic_decoder.h"

namespace {

using nlohmann::json;

std::string upper_hex(const std::vector<std::uint8_t>& of) {
    std::string text;
    for (const std::uint8_t byte : of) {
        text += "0123456789abcdef"[byte >> 4];
        text += "0123456789abcdef"[byte & 0xF];
    }
    return text;
}

std::string hex(unsigned value, int digits) {
    char text[16];
    std::snprintf(text, sizeof text, "%0*X", digits, value);
    return text;
}

json services_of(const dabspi::air::ensemble& of) {
    json all = json::array();
    for (const auto& each : of.services)
        all.push_back({{"sid", dabspi::air::service_id_text(each.sid, each.long_id)},
                       {"label", each.label},
                       {"components", each.components.size()}});
    return all;
}

json spi_of(const dabspi::air::ensemble& of) {
    json all = json::array();
    for (const auto& each : dabspi::air::spi_components(of))
        all.push_back({{"sid", dabspi::air::service_id_text(each.sid, each.long_id)},
                       {"scids", each.scids},
                       {"subch", each.sub_channel},
                       {"address", each.address},
                       {"ua_data", upper_hex(each.application_data)},
                       {"fec", each.fec_scheme}});
    return all;
}

void expect_file(const std::filesystem::path& file, const json& expected) {
    SCOPED_TRACE(file.string());
    auto in = dabspi::air::open_frames(file.string());
    ASSERT_NE(in.frames, nullptr) << in.error;
    dabspi::air::fic_decoder fic;
    json clock = json::array();
    for (dabspi::air::frame each; in.frames->next(each);) {
        const dabspi::air::fic_news news = fic.feed(each);
        if (news.minute) clock.push_back(dabspi::air::minute_text(*news.minute));
    }
    EXPECT_EQ(dabspi::short_name(in.found.kind), expected["form"]);
    EXPECT_EQ(in.frames->statistics().frames, expected["frames"]);
    const dabspi::air::ensemble ensemble = fic.describe();
    const json& wanted = expected["ensemble"];
    EXPECT_EQ(hex(ensemble.eid.value_or(0), 4), wanted["eid"]);
    EXPECT_EQ(hex(ensemble.ecc.value_or(0), 2), wanted["ecc"]);
    EXPECT_EQ(ensemble.label, wanted["label"]);
    EXPECT_EQ(ensemble.offset_half_hours, wanted["lto_half_hours"].get<int>());
    EXPECT_EQ(services_of(ensemble), expected["services"]);
    EXPECT_EQ(spi_of(ensemble), expected["spi"]);
    EXPECT_EQ(clock, expected["clock"]);
}

TEST(RealRecordings, GiveWhatTheirListSays) {
    const char* const folder = std::getenv("DABSPI_REAL");
    if (folder == nullptr || !std::filesystem::is_directory(std::filesystem::path(folder) / "air"))
        GTEST_SKIP()
            << "recordings made by others are checked where DABSPI_REAL names a folder with air/ in it";
    const std::filesystem::path air = std::filesystem::path(folder) / "air";
    std::ifstream list(air / "expected.json");
    const json expected = json::parse(list);
    ASSERT_FALSE(expected.empty());
    for (const auto& [name, what] : expected.items())
        expect_file(air / name, what);
}

}  // namespace

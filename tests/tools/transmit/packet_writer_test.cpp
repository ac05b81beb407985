// Packets and FEC, against builders that share no line with what wrote them.
#include "tools/transmit/packets/packet_writer.h"

#include <gtest/gtest.h>

#include "testkit/carousel/packet_mode.h"
#include "testkit/ensemble/dice.h"

namespace {

using namespace dabspi::transmit;
namespace kit = carousel_kit;

struct given_groups final : group_source {
    explicit given_groups(std::vector<bytes> all) : groups(std::move(all)) {}
    byte_view next_group() override {
        if (next == groups.size()) return {};
        return groups[next++];
    }
    std::vector<bytes> groups;
    std::size_t next = 0;
};

std::vector<bytes> some_groups(std::size_t count) {
    soak::dice dice(count);
    std::vector<bytes> all(count);
    for (bytes& each : all) {
        each.resize(static_cast<std::size_t>(dice.between(11, 700)));
        for (std::uint8_t& byte : each)
            byte = static_cast<std::uint8_t>(dice.below(256));
    }
    return all;
}

bytes written(const packet_settings& settings, const std::vector<bytes>& groups, std::size_t frames) {
    given_groups source(groups);
    packet_writer writer(settings, source);
    bytes all(settings.frame_size * frames);
    for (std::size_t i = 0; i < frames; ++i)
        writer.write_frame(all.data() + i * settings.frame_size);
    return all;
}

TEST(PacketWriter, WritesPacketsAsTheStandardHasThem) {
    for (const unsigned cells : {1U, 2U, 3U, 4U}) {
        const auto groups = some_groups(9);
        kit::packetizer packets(cells);
        kit::bytes expected;
        for (const bytes& each : groups)
            kit::append(expected, packets.joined(5, each));
        packet_settings settings;
        settings.address = 5;
        settings.packet_size = 24 * cells;
        settings.frame_size = expected.size();  // of one frame nothing has to be cut
        EXPECT_EQ(written(settings, groups, 1), expected) << cells;
    }
}

TEST(PacketWriter, FillsWithPaddingWhereNothingIsToBeSent) {
    packet_settings settings;
    settings.frame_size = 96;
    kit::bytes expected;
    for (int i = 0; i < 8; ++i)
        kit::append(expected, kit::padding_packet());
    EXPECT_EQ(written(settings, {}, 2), expected);
}

TEST(PacketWriter, FollowsEachFecFrameWithItsParity) {
    packet_settings settings;
    settings.packet_size = 24;
    settings.frame_size = 24 * 103;
    settings.fec = true;
    const auto groups = some_groups(40);
    kit::packetizer packets(1);
    std::vector<kit::bytes> all;
    for (const bytes& each : groups)
        for (const kit::bytes& packet : packets.packets(1, each))
            all.push_back(packet);
    const kit::bytes expected = kit::with_fec(all);
    EXPECT_EQ(written(settings, groups, expected.size() / settings.frame_size), expected);
}

}  // namespace

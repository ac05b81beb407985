// Carousels, packed and sent, come back through the layers that receive: other sources than those that sent.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>

#include "tests/tools/transmit/random_objects.h"
#include "tests/tools/transmit/received.h"
#include "tools/transmit/schedule/stretch.h"

namespace {

using namespace dabspi::transmit;
using namespace transmit_test;

struct sent_stretch {
    stretch sent;
    sent_carousel carousel;
};

sent_stretch send(const random_carousel& from) {
    carousel_maker maker(from.settings);
    sent_stretch made;
    made.carousel = maker.make(from.objects, 100);
    sending_order order = computed_order(made.carousel, from.importances);
    close_order(order, made.carousel);
    made.sent = make_stretch(made.carousel, order, from.packets);
    return made;
}

void expect_objects(const receiver& got, const random_carousel& from) {
    ASSERT_EQ(got.objects.size(), from.objects.size());
    for (const sent_object& each : from.objects) {
        const auto found = got.objects.find(each.name);
        ASSERT_NE(found, got.objects.end()) << each.name;
        const received_body& received = found->second;
        EXPECT_EQ(received.body, *each.body);
        EXPECT_EQ(received.header.content_type, each.content_type);
        EXPECT_EQ(received.header.content_subtype, each.content_subtype);
        EXPECT_EQ(received.header.unique_body_version, version_of(*each.body));
        EXPECT_EQ(received.header.compression.has_value(), each.packed != nullptr);
        EXPECT_EQ(received.header.scope_id, each.scope_id);
        ASSERT_EQ(received.header.scope_start.has_value(), each.scope_start.has_value());
        if (!each.scope_start) continue;
        EXPECT_EQ(received.header.scope_start->mjd, each.scope_start->mjd);
        EXPECT_EQ(received.header.scope_start->hour, each.scope_start->hour);
        EXPECT_EQ(received.header.scope_start->minute, each.scope_start->minute);
        EXPECT_EQ(received.header.scope_start->second, each.scope_start->second);
    }
}

std::uint64_t rounds() {
    const char* const wanted = std::getenv("DABSPI_CAROUSELS");
    return wanted == nullptr ? 300 : std::strtoull(wanted, nullptr, 10);
}

TEST(RoundTrip, RandomCarouselsComeBackAsTheyWereSent) {
    for (std::uint64_t seed = 0; seed < rounds(); ++seed) {
        SCOPED_TRACE(seed);
        const random_carousel from(seed);
        const sent_stretch made = send(from);
        receiver got(from.packets.fec, from.packets.address);
        got.feed(made.sent.packets, from.packets.frame_size);
        got.finish();
        expect_objects(got, from);
        if (testing::Test::HasFailure()) return;
    }
}

TEST(RoundTrip, AStretchThatIsRepeatedHasNoSeam) {
    for (std::uint64_t seed = 1000; seed < 1000 + rounds() / 4; ++seed) {
        SCOPED_TRACE(seed);
        const random_carousel from(seed);
        const sent_stretch made = send(from);
        receiver got(from.packets.fec, from.packets.address);
        std::size_t deliveries = 0;
        for (int round = 0; round < 3; ++round) {
            got.feed(made.sent.packets, from.packets.frame_size);
            if (round == 0) deliveries = got.deliveries;
        }
        got.finish();
        EXPECT_EQ(got.continuity_jumps, 0U);
        EXPECT_EQ(got.deliveries, from.objects.size());
        EXPECT_GE(deliveries + 1, from.objects.size());
        using dabspi::air::packet_drop;
        const dabspi::air::packet_counts& counts = got.packets.counts();
        for (const packet_drop cause :
             {packet_drop::lost_packets, packet_drop::repeated_packet, packet_drop::wrong_crc,
              packet_drop::unfinished_group, packet_drop::without_begin})
            EXPECT_EQ(counts.of(cause), 0U) << drop_text(cause);
        if (from.packets.fec) {
            EXPECT_EQ(counts.fec_sets * 103, counts.cells);
        }
        if (testing::Test::HasFailure()) return;
    }
}

// Packets are whole in each logical frame: each frame can be read by itself.
TEST(RoundTrip, NoPacketCrossesALogicalFrame) {
    for (std::uint64_t seed = 2000; seed < 2050; ++seed) {
        const random_carousel from(seed);
        const bytes packets = send(from).sent.packets;
        for (std::size_t at = 0; at < packets.size(); at += from.packets.frame_size) {
            std::size_t in_frame = 0;
            while (in_frame < from.packets.frame_size)
                in_frame += 24 * dabspi::air::cells_of_packet(packets[at + in_frame]);
            ASSERT_EQ(in_frame, from.packets.frame_size) << seed;
        }
    }
}

// One packet in ten is lost, in a row of its own cells, and nothing says where.
bytes with_lost_packets(const bytes& packets, unsigned seed) {
    std::mt19937 random(seed);
    bytes damaged = packets;
    for (std::size_t at = 0; at < damaged.size();) {
        const std::size_t size =
            std::min(24 * dabspi::air::cells_of_packet(packets[at]), damaged.size() - at);
        if (random() % 10 == 0)
            std::fill_n(damaged.begin() + static_cast<std::ptrdiff_t>(at), size, std::uint8_t{0x5A});
        at += size;
    }
    return damaged;
}

TEST(RoundTrip, LossesAreMadeGoodByRoundsAndByFec) {
    std::size_t rounds_with = 0;
    std::size_t rounds_without = 0;
    for (std::uint64_t seed = 3000; seed < 3000 + std::min<std::uint64_t>(rounds() / 4, 40); ++seed) {
        SCOPED_TRACE(seed);
        for (const bool fec : {true, false}) {
            random_carousel from(seed);
            from.packets.fec = fec;
            from.settings.segment_size = std::min<std::size_t>(from.settings.segment_size, 400);
            const sent_stretch made = send(from);
            receiver got(fec, from.packets.address);
            unsigned round = 0;
            for (; got.objects.size() < from.objects.size() && round < 60; ++round)
                got.feed(with_lost_packets(made.sent.packets, static_cast<unsigned>(seed) + round),
                         from.packets.frame_size);
            got.feed(made.sent.packets, from.packets.frame_size);
            got.finish();
            EXPECT_LT(round, 60U);
            expect_objects(got, from);
            (fec ? rounds_with : rounds_without) += round;
        }
        if (testing::Test::HasFailure()) return;
    }
    RecordProperty("rounds_with_fec", static_cast<int>(rounds_with));
    RecordProperty("rounds_without", static_cast<int>(rounds_without));
    EXPECT_LT(rounds_with, rounds_without);
}

}  // namespace

// From the sub-channel's bytes to objects: packets, data groups and MOT together, whole and damaged.
#include <gtest/gtest.h>

#include "testkit/ensemble/dice.h"
#include "tests/tools/air/mot/received_objects.h"
#include "tests/tools/air/packets/collected_groups.h"
#include "tools/air/packets/packet_decoder.h"

namespace {

namespace kit = carousel_kit;
using namespace dabspi::air;
using air_test::object_of;
using air_test::part;
using air_test::pattern;
using air_test::played_carousel;

// Two carousels in one sub-channel.
struct chain final : data_group_sink {
    explicit chain(packet_fec fec) : packets(*this, fec) {}
    void data_group(std::uint16_t address, byte_view group) override {
        if (address == 1) first.carousel.take(group, frame);
        if (address == 2) second.carousel.take(group, frame);
    }
    void finish() {
        packets.finish();
        first.carousel.finish();
        second.carousel.finish();
    }
    std::uint64_t frame = 0;
    played_carousel first;
    played_carousel second;
    packet_decoder packets;
};

class CarouselChain : public ::testing::Test {
 protected:
    std::vector<kit::object> objects;
    CarouselChain() {
        for (unsigned i = 0; i < 4; ++i)
            objects.push_back(object_of(20 + i, "object " + std::to_string(i), pattern(300 + 400 * i, i)));
    }
    kit::bytes stream(unsigned packet_cells, bool fec, unsigned rounds = 1) {
        kit::packetizer packets(packet_cells);
        std::vector<kit::bytes> all;
        for (unsigned round = 0; round < rounds; ++round) {
            auto a = kit::directory_round(5, objects, 200, true);
            auto b = kit::header_round(objects, 150);
            for (std::size_t i = 0; i < std::max(a.size(), b.size()); ++i) {
                if (i < a.size()) kit::append(all, packets.packets(1, a[i]));
                if (i < b.size()) kit::append(all, packets.packets(2, b[i]));
            }
        }
        if (fec) return kit::with_fec(all);
        kit::bytes joined;
        for (const kit::bytes& each : all)
            kit::append(joined, each);
        return joined;
    }
};

TEST_F(CarouselChain, WithAllPacketLengthsWithAndWithoutFec) {
    for (unsigned cells = 1; cells <= 4; ++cells)
        for (const bool fec : {false, true}) {
            chain whole(fec ? packet_fec::rs_12_9 : packet_fec::none);
            for (const kit::bytes& frame : kit::logical_frames(stream(cells, fec), 192)) {
                whole.packets.feed(frame);
                ++whole.frame;
            }
            whole.finish();
            for (const played_carousel* played : {&whole.first, &whole.second}) {
                ASSERT_EQ(played->sink.all.size(), objects.size());
                for (std::size_t i = 0; i < objects.size(); ++i)
                    EXPECT_EQ(played->sink.all[i].body, objects[i].body);
            }
            EXPECT_EQ(whole.packets.counts().of(packet_drop::wrong_crc), 0U);
        }
}

TEST_F(CarouselChain, CutAtEveryByteWhatWasWholeIsThere) {
    objects = {object_of(20, "a", pattern(230, 1)), object_of(21, "b", pattern(120, 2))};
    for (const bool fec : {false, true}) {
        const kit::bytes all = stream(2, fec);
        std::size_t before = 0;
        for (std::size_t size = 0; size <= all.size(); ++size) {
            chain cut(fec ? packet_fec::rs_12_9 : packet_fec::none);
            cut.packets.feed(part(all, 0, size));
            cut.finish();
            const std::size_t now = cut.first.sink.all.size() + cut.second.sink.all.size();
            ASSERT_GE(now, before) << size;
            for (const auto& object : cut.first.sink.all)
                ASSERT_TRUE(object.body == objects[0].body || object.body == objects[1].body);
            before = now;
        }
        EXPECT_EQ(before, 4U);
    }
}

TEST_F(CarouselChain, SeededDamageGivesWholeObjectsAndFecGivesMore) {
    std::size_t plain = 0;
    std::size_t repaired = 0;
    for (const bool fec : {false, true}) {
        const auto frames = kit::logical_frames(stream(4, true, 4), 192);
        for (std::uint64_t seed = 0; seed < 12; ++seed) {
            soak::dice dice(seed);
            chain damaged(fec ? packet_fec::rs_12_9 : packet_fec::none);
            for (kit::bytes frame : frames) {
                ++damaged.frame;
                if (dice.one_in(60)) {
                    damaged.packets.missing(frame.size());
                    continue;
                }
                if (dice.one_in(12)) frame[static_cast<std::size_t>(dice.below(192))] ^= 0x81;
                damaged.packets.feed(frame);
            }
            damaged.finish();
            for (const played_carousel* played : {&damaged.first, &damaged.second})
                for (const auto& object : played->sink.all) {
                    ASSERT_EQ(object.body, objects[object.transport_id - 20].body) << seed;
                    ++(fec ? repaired : plain);
                }
        }
    }
    EXPECT_GT(plain, 12U * 8);
    EXPECT_GT(repaired, plain);
}

}  // namespace

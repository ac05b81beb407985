// Packet mode without forward error correction.
#include "tools/air/packets/packet_decoder.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "testkit/ensemble/dice.h"
#include "tests/tools/air/packets/collected_groups.h"

namespace {

namespace kit = carousel_kit;
using namespace dabspi::air;
using air_test::collected_groups;
using air_test::part;
using air_test::pattern;
using groups = std::vector<collected_groups::group>;

class PacketDecoder : public ::testing::Test {
 protected:
    void expect_groups(const groups& expected) { EXPECT_EQ(sink.groups, expected); }
    std::uint64_t dropped(packet_drop cause) { return decoder.counts().of(cause); }

    collected_groups sink;
    packet_decoder decoder{sink};
};

TEST_F(PacketDecoder, PacketsOfAllLengthsMakeTheGroup) {
    for (unsigned cells = 1; cells <= 4; ++cells) {
        kit::packetizer packets(cells);
        decoder.feed(packets.joined(cells, pattern(500, cells)));
    }
    expect_groups({{1, pattern(500, 1)}, {2, pattern(500, 2)}, {3, pattern(500, 3)}, {4, pattern(500, 4)}});
    EXPECT_EQ(decoder.counts().groups, 4U);
}

TEST_F(PacketDecoder, AGroupIsHandedOnWithItsLastByteNotBefore) {
    kit::packetizer packets;
    const kit::bytes stream = packets.joined(1, pattern(500, 1));
    for (std::size_t at = 0; at < stream.size(); ++at) {
        EXPECT_TRUE(sink.groups.empty()) << at;
        decoder.feed(part(stream, at, 1));
    }
    expect_groups({{1, pattern(500, 1)}});
}

TEST_F(PacketDecoder, PacketsMayCrossLogicalFrames) {
    kit::packetizer packets;
    kit::bytes stream;
    groups expected;
    for (unsigned i = 0; i < 20; ++i) {
        kit::append(stream, packets.joined(7, pattern(300 + i, i)));
        expected.emplace_back(7, pattern(300 + i, i));
    }
    for (const kit::bytes& frame : kit::logical_frames(stream, 48))
        decoder.feed(frame);
    expect_groups(expected);
    EXPECT_EQ(dropped(packet_drop::wrong_crc), 0U);
}

TEST_F(PacketDecoder, AddressesAreInterleaved) {
    kit::packetizer packets;
    const auto first = packets.packets(1, pattern(600, 1));
    const auto second = packets.packets(2, pattern(600, 2));
    for (std::size_t i = 0; i < first.size(); ++i) {
        decoder.feed(first[i]);
        decoder.feed(kit::padding_packet(1 + i % 4));
        decoder.feed(second[i]);
    }
    expect_groups({{1, pattern(600, 1)}, {2, pattern(600, 2)}});
    EXPECT_EQ(decoder.counts().padding, first.size());
    const auto addresses = decoder.addresses();
    ASSERT_EQ(addresses.size(), 2U);
    EXPECT_EQ(addresses[0].address, 1);
    EXPECT_EQ(addresses[0].packets, first.size());
    EXPECT_EQ(addresses[1].groups, 1U);
}

TEST_F(PacketDecoder, AfterADamagedPacketReadingGoesOnAtTheNextCell) {
    kit::packetizer packets(1);
    kit::bytes stream = packets.joined(1, pattern(19, 1));
    stream[0] |= 0xC0;  // claims 96 bytes: what follows must not be passed over
    for (unsigned i = 2; i < 4; ++i)
        kit::append(stream, packets.joined(1, pattern(19, i)));
    decoder.feed(stream);
    EXPECT_TRUE(sink.groups.empty());  // the packet that is claimed might still come
    decoder.finish();
    expect_groups({{1, pattern(19, 2)}, {1, pattern(19, 3)}});
    EXPECT_EQ(dropped(packet_drop::wrong_crc), 1U);
}

TEST_F(PacketDecoder, ALostPacketDropsItsGroupAndNoOther) {
    kit::packetizer packets(2);
    for (unsigned lost = 0; lost < 6; ++lost) {
        const auto all = packets.packets(1, pattern(43 * 6, lost));
        for (std::size_t i = 0; i < all.size(); ++i)
            if (i != lost) decoder.feed(all[i]);
        decoder.feed(packets.joined(1, pattern(50, lost)));
        ASSERT_EQ(sink.groups.size(), lost + 1);
        EXPECT_EQ(sink.groups.back().second, pattern(50, lost));
    }
    EXPECT_EQ(dropped(packet_drop::lost_packets), 5U);
    EXPECT_EQ(dropped(packet_drop::without_begin), 5U + 4 + 3 + 2 + 1);
}

TEST_F(PacketDecoder, ARepeatedPacketEndsTheGroup) {
    kit::packetizer packets(1);
    const auto all = packets.packets(1, pattern(50, 1));
    for (const std::size_t i : {0U, 1U, 1U, 2U})
        decoder.feed(all[i]);
    EXPECT_TRUE(sink.groups.empty());
    EXPECT_EQ(dropped(packet_drop::repeated_packet), 1U);
}

TEST_F(PacketDecoder, FourLostPacketsAreNoticedAlthoughContinuityCountsModuloFour) {
    for (const bool known : {true, false}) {
        kit::packetizer packets(1);
        const auto all = packets.packets(1, pattern(19 * 8, 1));
        for (std::size_t i = 0; i < all.size(); ++i) {
            if (i < 2 || i > 5) {
                decoder.feed(all[i]);
            } else if (known) {
                decoder.missing(kCell);
            } else {
                decoder.feed(kit::bytes(kCell, 0x11));
            }
        }
        EXPECT_TRUE(sink.groups.empty());
    }
    EXPECT_EQ(dropped(packet_drop::lost_packets), 2U);
    EXPECT_EQ(dropped(packet_drop::missing_cell), 4U);
    EXPECT_EQ(dropped(packet_drop::wrong_crc), 4U);
}

TEST_F(PacketDecoder, CommandPacketsAreNotDataWhetherCountedOrNot) {
    kit::packet_fields command;
    command.command = true;
    for (const bool counted : {true, false}) {
        kit::packet_fields fields;
        fields.last = false;
        decoder.feed(kit::packet(fields, pattern(19, 1)));
        command.continuity = counted ? 1 : 3;
        decoder.feed(kit::packet(command, pattern(19, 2)));
        fields.first = false;
        fields.last = true;
        fields.continuity = counted ? 2 : 1;
        decoder.feed(kit::packet(fields, pattern(19, 3)));
    }
    kit::bytes joined = pattern(19, 1);
    kit::append(joined, pattern(19, 3));
    expect_groups({{1, joined}, {1, joined}});
    EXPECT_EQ(decoder.counts().commands, 2U);
}

TEST_F(PacketDecoder, FecPacketsArePassedOver) {
    kit::packetizer packets;
    decoder.feed(kit::with_fec(packets.packets(1, pattern(900, 1))));
    expect_groups({{1, pattern(900, 1)}});
    EXPECT_EQ(decoder.counts().fec_packets, 9U);
    EXPECT_EQ(dropped(packet_drop::wrong_crc), 0U);
}

TEST_F(PacketDecoder, AUsefulLengthBeyondTheFieldDropsTheGroup) {
    kit::packet_fields fields;
    fields.useful = 20;
    decoder.feed(kit::packet(fields, pattern(19, 1)));
    EXPECT_TRUE(sink.groups.empty());
    EXPECT_EQ(dropped(packet_drop::ill_formed), 1U);
}

TEST_F(PacketDecoder, AnEndlessGroupIsDropped) {
    kit::packetizer packets;
    decoder.feed(packets.joined(1, pattern(9000, 1)));
    decoder.feed(packets.joined(1, pattern(8215, 2)));
    expect_groups({{1, pattern(8215, 2)}});
    EXPECT_EQ(dropped(packet_drop::group_too_long), 1U);
}

TEST_F(PacketDecoder, GroupsBeingCollectedTakeBoundedMemory) {
    packet_limits limits;
    limits.groups = 1000;
    collected_groups few;
    packet_decoder small(few, packet_fec::none, limits);
    kit::packet_fields fields;
    fields.cells = 4;
    fields.last = false;
    for (unsigned address = 1; address < 1000; ++address) {
        fields.address = address;
        small.feed(kit::packet(fields, pattern(91, address)));
    }
    EXPECT_EQ(small.counts().of(packet_drop::memory_limit), 999U - 1000 / 91);
    small.finish();
    EXPECT_EQ(small.counts().of(packet_drop::unfinished_group), 1000U / 91);
}

TEST_F(PacketDecoder, AGroupThatBeginsWithinAnotherCountsAsUnfinished) {
    kit::packetizer packets(1);
    decoder.feed(packets.packets(1, pattern(50, 1)).front());
    kit::packet_fields fields;
    fields.continuity = 1;
    decoder.feed(kit::packet(fields, pattern(10, 2)));
    expect_groups({{1, pattern(10, 2)}});
    EXPECT_EQ(dropped(packet_drop::unfinished_group), 1U);
}

TEST_F(PacketDecoder, MissingBytesKeepTheCellsInPlace) {
    kit::packetizer packets(2);
    kit::bytes stream;
    for (unsigned i = 0; i < 12; ++i)
        kit::append(stream, packets.joined(1, pattern(43, i)));
    // Frames of 64 bytes: neither packets nor cells fit.
    const auto frames = kit::logical_frames(stream, 64);
    for (std::size_t i = 0; i < frames.size(); ++i) {
        if (i == 3) {
            decoder.missing(64);
        } else {
            decoder.feed(frames[i]);
        }
    }
    // Bytes 192 to 255 are those of packets 4 and 5.
    ASSERT_EQ(sink.groups.size(), 10U);
    EXPECT_EQ(sink.groups[3].second, pattern(43, 3));
    EXPECT_EQ(sink.groups[4].second, pattern(43, 6));
}

TEST_F(PacketDecoder, AVeryLongGapCostsNothing) {
    kit::packetizer packets(1);
    const auto all = packets.packets(1, pattern(38, 1));
    decoder.feed(all[0]);
    decoder.missing(std::size_t{24} * 1'000'000'000 + 5);
    decoder.feed(kit::bytes(19, 0));
    decoder.feed(all[1]);
    decoder.feed(packets.joined(1, pattern(5, 2)));
    expect_groups({{1, pattern(5, 2)}});
    EXPECT_EQ(dropped(packet_drop::missing_cell), 1'000'000'001U);
}

TEST_F(PacketDecoder, CutAnywhereTheGroupsBeforeTheCutAreThere) {
    kit::packetizer packets(3);
    kit::bytes stream;
    std::vector<std::size_t> ends;
    for (unsigned i = 0; i < 8; ++i) {
        kit::append(stream, packets.joined(1, pattern(150, i)));
        ends.push_back(stream.size());
    }
    for (std::size_t size = 0; size <= stream.size(); ++size) {
        collected_groups cut_sink;
        packet_decoder cut(cut_sink);
        cut.feed(part(stream, 0, size));
        cut.finish();
        const auto whole =
            std::count_if(ends.begin(), ends.end(), [&](std::size_t end) { return end <= size; });
        ASSERT_EQ(cut_sink.groups.size(), static_cast<std::size_t>(whole)) << size;
    }
}

TEST_F(PacketDecoder, WhatComesOutOfADamagedStreamWasSent) {
    for (std::uint64_t seed = 0; seed < 200; ++seed) {
        soak::dice dice(seed);
        kit::packetizer packets(1 + seed % 4);
        groups sent;
        collected_groups got;
        packet_decoder decoder_of_seed(got);
        for (unsigned i = 0; i < 60; ++i) {
            const unsigned address = 1 + static_cast<unsigned>(dice.below(3));
            kit::group_fields fields;
            fields.transport_id = i;
            sent.emplace_back(
                address, kit::data_group(fields, pattern(static_cast<std::size_t>(dice.between(1, 400)), i)));
            for (kit::bytes each : packets.packets(address, sent.back().second)) {
                if (dice.one_in(40)) continue;
                if (dice.one_in(40))
                    each[static_cast<std::size_t>(dice.below(static_cast<int>(each.size())))] ^= 4;
                if (dice.one_in(40)) each = kit::bytes(kCell * 4, 0);
                decoder_of_seed.feed(each);
                if (dice.one_in(60)) decoder_of_seed.feed(each);
            }
        }
        decoder_of_seed.finish();
        std::size_t at = 0;
        for (const auto& group : got.groups) {  // one in a single packet comes again where that is repeated
            while (at < sent.size() && sent[at] != group)
                ++at;
            ASSERT_LT(at, sent.size()) << "seed " << seed << ": a group that was not sent, or out of order";
        }
        EXPECT_GT(got.groups.size(), 10U);
    }
}

}  // namespace

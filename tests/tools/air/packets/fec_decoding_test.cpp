// Packet mode with forward error correction: what is repaired, in which order, and how late.
#include <gtest/gtest.h>

#include <algorithm>

#include "testkit/ensemble/dice.h"
#include "tests/tools/air/packets/collected_groups.h"
#include "tools/air/packets/packet_decoder.h"

namespace {

namespace kit = carousel_kit;
using namespace dabspi::air;
using air_test::collected_groups;
using air_test::pattern;
using groups = std::vector<collected_groups::group>;

// Four FEC frames of groups of a few packets each, two addresses.
class FecDecoding : public ::testing::Test {
 protected:
    FecDecoding() {
        kit::packetizer packets(2);
        std::vector<kit::bytes> all;
        for (unsigned i = 0; all.size() < 4 * 47; ++i) {
            const unsigned address = 1 + i % 2;
            sent.emplace_back(address, pattern(43 * 3, i));
            for (const kit::bytes& each : packets.packets(address, sent.back().second))
                all.push_back(each);
        }
        frames = kit::logical_frames(kit::with_fec(all), kFrame);
    }

    void play(const std::vector<std::size_t>& lost, const std::vector<std::size_t>& damaged_cells = {},
              std::size_t from = 0) {
        for (std::size_t i = from; i < frames.size(); ++i) {
            kit::bytes frame = frames[i];
            for (const std::size_t cell : damaged_cells)
                if (cell / (kFrame / kCell) == i) frame[cell % (kFrame / kCell) * kCell + 7] ^= 0xFF;
            if (std::find(lost.begin(), lost.end(), i) != lost.end()) {
                decoder.missing(kFrame);
            } else {
                decoder.feed(frame);
            }
        }
        decoder.finish();
    }
    std::uint64_t dropped(packet_drop cause) { return decoder.counts().of(cause); }

    static constexpr std::size_t kFrame = 48;
    groups sent;
    std::vector<kit::bytes> frames;
    collected_groups sink;
    packet_decoder decoder{sink, packet_fec::rs_12_9};
};

TEST_F(FecDecoding, WithoutDamageEveryGroupGoesOutAtOnceAndNothingIsCorrected) {
    collected_groups plain_sink;
    packet_decoder plain(plain_sink);
    for (const kit::bytes& frame : frames) {
        decoder.feed(frame);
        plain.feed(frame);
        EXPECT_EQ(sink.groups.size(), plain_sink.groups.size());
    }
    EXPECT_EQ(sink.groups, sent);
    EXPECT_GE(decoder.counts().fec_sets, 4U);
    EXPECT_EQ(decoder.counts().fec_sets_used, 0U);
}

TEST_F(FecDecoding, FourMissingFramesAreRestored) {
    play({60, 61, 62, 63});
    EXPECT_EQ(sink.groups, sent);
    EXPECT_EQ(decoder.counts().fec_sets_used, 1U);
    EXPECT_EQ(decoder.counts().fec_sets_repaired, 1U);
    EXPECT_EQ(dropped(packet_drop::missing_cell), 0U);
}

TEST_F(FecDecoding, MissingFramesOfTheFirstFecFrameAreRestored) {
    play({3, 9, 20});
    EXPECT_EQ(sink.groups, sent);
}

TEST_F(FecDecoding, DamagedCellsAreRestored) {
    play({}, {0, 50, 93, 110, 111, 112, 113, 210, 300});
    EXPECT_EQ(sink.groups, sent);
    EXPECT_EQ(dropped(packet_drop::wrong_crc), 0U);
}

TEST_F(FecDecoding, DamagedFecPacketsCostNothing) {
    std::vector<std::size_t> cells;
    for (std::size_t i = 0; i < 7; ++i)
        cells.push_back(103 + 94 + i);
    play({}, cells);
    EXPECT_EQ(sink.groups, sent);
    EXPECT_EQ(decoder.counts().fec_sets_used, 0U);
    EXPECT_EQ(dropped(packet_drop::wrong_crc), 0U);
}

TEST_F(FecDecoding, MissingFecPacketsCostNothing) {
    play({99, 100, 101, 102});  // cells 198 to 205: eight of nine packets of the second set
    EXPECT_EQ(sink.groups, sent);
    EXPECT_EQ(decoder.counts().fec_sets_absent, 0U);
}

TEST_F(FecDecoding, TooManyMissingFramesLoseTheirOwnGroupsOnly) {
    play({60, 61, 62, 63, 64});
    EXPECT_LT(sink.groups.size(), sent.size());
    EXPECT_GE(sink.groups.size() + 5, sent.size());
    std::size_t at = 0;
    for (const auto& group : sink.groups) {
        while (at < sent.size() && sent[at] != group)
            ++at;
        ASSERT_LT(at++, sent.size());
    }
    EXPECT_EQ(dropped(packet_drop::missing_cell), 10U);
    EXPECT_EQ(decoder.counts().fec_sets_repaired, 0U);
}

TEST_F(FecDecoding, OnlyWhatFollowsTheDamageWaits) {
    const std::size_t damaged = 60;
    for (std::size_t i = 0; i < damaged; ++i)
        decoder.feed(frames[i]);
    const std::size_t before = sink.groups.size();
    EXPECT_GT(before, 0U);
    decoder.missing(kFrame);
    std::size_t i = damaged + 1;
    for (; (i + 1) * 2 <= 2 * kFecFrameCells; ++i) {
        EXPECT_EQ(sink.groups.size(), before) << i;
        decoder.feed(frames[i]);
    }
    EXPECT_GT(sink.groups.size(), before);  // with the last FEC packet of the frame
}

TEST_F(FecDecoding, WhereNoFecIsSentDamageWaitsForTheLengthOfOneFecFrame) {
    kit::packetizer packets(1);
    kit::bytes damaged = packets.packets(1, pattern(10, 0)).front();
    damaged[9] ^= 1;
    decoder.feed(damaged);
    for (unsigned i = 1; i < kFecFrameCells; ++i) {
        EXPECT_TRUE(sink.groups.empty());
        decoder.feed(packets.joined(1, pattern(10, i)));
    }
    EXPECT_EQ(sink.groups.size(), kFecFrameCells - 1);
    EXPECT_EQ(dropped(packet_drop::wrong_crc), 1U);
    decoder.finish();
    EXPECT_EQ(decoder.counts().fec_sets, 0U);
}

TEST_F(FecDecoding, BeginningAnywhereTheNextSetIsFound) {
    for (std::size_t from = 0; from < 52; ++from) {
        collected_groups got;
        packet_decoder late(got, packet_fec::rs_12_9);
        for (std::size_t i = from; i < frames.size(); ++i) {
            if (i == 60 || i == 110) {
                late.missing(kFrame);
            } else {
                late.feed(frames[i]);
            }
        }
        late.finish();
        EXPECT_EQ(late.counts().fec_sets_repaired, 2U) << from;
        ASSERT_LE(got.groups.size(), sent.size());
        const auto offset = static_cast<std::ptrdiff_t>(sent.size() - got.groups.size());
        EXPECT_EQ(got.groups, groups(sent.begin() + offset, sent.end())) << from;
    }
}

TEST_F(FecDecoding, AGapLongerThanFecFramesLosesNothingBehindIt) {
    for (std::size_t i = 0; i < 10; ++i)
        decoder.feed(frames[i]);
    decoder.missing(1030 * kFrame);  // twenty FEC frames: the next set is where it is expected
    for (std::size_t i = 10; i < frames.size(); ++i) {
        if (i == 30) {
            decoder.missing(kFrame);
        } else {
            decoder.feed(frames[i]);
        }
    }
    decoder.finish();
    EXPECT_EQ(sink.groups.back(), sent.back());
    EXPECT_GE(sink.groups.size() + 3, sent.size());
}

TEST_F(FecDecoding, ASetWhoseEndIsCutOffStillRepairs) {
    frames.resize(102);  // 204 of 206 cells: of the second set two FEC packets are not there
    play({70});
    EXPECT_EQ(decoder.counts().fec_sets_repaired, 1U);
}

TEST_F(FecDecoding, CutAnywhereNothingIsInventedAndNothingComesTwice) {
    kit::bytes stream;
    for (const kit::bytes& frame : frames)
        kit::append(stream, frame);
    stream.resize(2 * kFecFrameCells * kCell);
    stream[30 * kCell + 5] ^= 0x40;
    stream[150 * kCell + 5] ^= 0x40;
    for (std::size_t size = 0; size <= stream.size(); size += 1 + size % 7) {
        collected_groups got;
        packet_decoder cut(got, packet_fec::rs_12_9);
        cut.feed(air_test::part(stream, 0, size));
        cut.finish();
        std::size_t at = 0;
        for (const auto& group : got.groups) {
            while (at < sent.size() && sent[at] != group)
                ++at;
            ASSERT_LT(at++, sent.size()) << size;
        }
        if (size >= kFecFrameCells * kCell) {
            EXPECT_EQ(got.groups.front(), sent.front());
        }
    }
}

TEST_F(FecDecoding, SeededLossGivesMoreThanWithoutFecAndNothingElse) {
    std::size_t with = 0;
    std::size_t without = 0;
    for (std::uint64_t seed = 0; seed < 60; ++seed) {
        soak::dice dice(seed);
        collected_groups got;
        collected_groups plain_got;
        packet_decoder fec(got, packet_fec::rs_12_9);
        packet_decoder plain(plain_got);
        for (kit::bytes frame : frames) {
            if (dice.one_in(25)) {
                fec.missing(kFrame);
                plain.missing(kFrame);
                continue;
            }
            if (dice.one_in(25)) frame[static_cast<std::size_t>(dice.below(kFrame))] ^= 0x21;
            fec.feed(frame);
            plain.feed(frame);
        }
        fec.finish();
        plain.finish();
        std::size_t at = 0;
        for (const auto& group : got.groups) {
            while (at < sent.size() && sent[at] != group)
                ++at;
            ASSERT_LT(at++, sent.size()) << seed;
        }
        EXPECT_GE(got.groups.size(), plain_got.groups.size()) << seed;
        with += got.groups.size();
        without += plain_got.groups.size();
    }
    EXPECT_GT(with, without + without / 10);
}

}  // namespace

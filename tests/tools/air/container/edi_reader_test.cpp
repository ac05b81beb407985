#include "tools/air/container/edi_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "testkit/multiplex/appending.h"
#include "testkit/multiplex/damage.h"
#include "testkit/multiplex/edi_writer.h"
#include "tests/tools/air/container/collected.h"

namespace {

namespace mb = multiplex_builder;
using air_tests::collect;
using air_tests::collected;
using air_tests::expect_same;

mb::pf_options protected_fragments() {
    mb::pf_options options;
    options.fec = true;
    return options;
}

std::vector<std::vector<mb::bytes>> fragments_of(const std::vector<mb::logical_frame>& frames,
                                                 const mb::pf_options& options, unsigned first = 0) {
    std::vector<std::vector<mb::bytes>> all;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const auto number = static_cast<std::uint16_t>(first + i);
        all.push_back(mb::pf_fragments(mb::af_packet(frames[i], number), number, options));
    }
    return all;
}

mb::bytes one_after_another(const std::vector<std::vector<mb::bytes>>& all) {
    mb::bytes result;
    for (const auto& set : all)
        for (const mb::bytes& each : set)
            mb::append(result, each);
    return result;
}

TEST(EdiReader, CountsGoUpToFiveThousand) {
    const auto frames = mb::noise_frames(6, 4997);
    const collected got = collect(mb::af_stream(frames));
    ASSERT_EQ(got.frames.size(), 6U);
    EXPECT_EQ(got.frames[2].count, 4999);
    EXPECT_EQ(got.frames[3].count, 0);
    EXPECT_EQ(got.statistics.frames_missing, 0U);
}

TEST(EdiReader, APacketWithAWrongCrcIsDroppedAlone) {
    const auto frames = mb::noise_frames(6);
    mb::bytes file = mb::af_stream(frames);
    file[2 * file.size() / 6 + 100] ^= 1;
    const collected got = collect(file);
    EXPECT_EQ(got.frames.size(), 5U);
    EXPECT_EQ(got.statistics.af_crc_wrong, 1U);
    EXPECT_EQ(got.missing_before[2], 1U);
    EXPECT_EQ(got.statistics.bytes_skipped, 0U);
}

TEST(EdiReader, ADamagedLengthDoesNotTakeTheNextPacketAway) {
    const auto frames = mb::noise_frames(6);
    mb::bytes file = mb::af_stream(frames);
    file[2 * file.size() / 6 + 4] ^= 1;
    EXPECT_EQ(collect(file).frames.size(), 5U);
}

TEST(EdiReader, APacketSentTwiceCountsOnce) {
    const auto frames = mb::noise_frames(4);
    mb::bytes file;
    for (std::uint16_t i = 0; i < 4; ++i)
        for (int times = 0; times < 2; ++times)
            mb::append(file, mb::af_packet(frames[i], i));
    const collected got = collect(file);
    expect_same(got.frames, frames);
    EXPECT_EQ(got.statistics.af_repeated, 4U);
}

TEST(EdiReader, PacketsWithoutAFrameAreCounted) {
    mb::bytes file = {'A', 'F', 0, 0, 0, 0, 0, 1, 0x90, 'T'};
    file = mb::with_crc16(file);
    mb::append(file, mb::af_stream(mb::noise_frames(2)));
    const collected got = collect(file);
    EXPECT_EQ(got.frames.size(), 2U);
    EXPECT_EQ(got.statistics.af_without_frame, 1U);
}

TEST(EdiReader, ItemsThatDoNotFitMakeAPacketMalformed) {
    mb::bytes file = {'A', 'F', 0, 0, 0, 9, 0, 1, 0x90, 'T', 'd', 'e', 't', 'i', 0, 0, 0xFF, 0, 1};
    file = mb::with_crc16(file);
    mb::append(file, mb::af_stream(mb::noise_frames(2)));
    EXPECT_EQ(collect(file).statistics.af_malformed, 1U);
}

TEST(EdiReader, PutsFragmentsInAnyOrderTogether) {
    const auto frames = mb::noise_frames(12);
    for (const bool fec : {false, true}) {
        auto options = protected_fragments();
        options.fec = fec;
        options.fragment_size = 40;
        auto all = fragments_of(frames, options, 65530);  // sequence numbers begin again
        std::mt19937 random(3);
        for (auto& set : all)
            std::shuffle(set.begin(), set.end(), random);
        // A neighbour's last one comes first.
        for (std::size_t i = 0; i + 1 < all.size(); i += 2)
            std::swap(all[i].back(), all[i + 1].front());
        expect_same(collect(one_after_another(all)).frames, frames);
    }
}

TEST(EdiReader, RepairsWhatTheParityReaches) {
    const auto frames = mb::noise_frames(12);
    auto all = fragments_of(frames, protected_fragments());
    std::mt19937 random(5);
    for (auto& set : all)
        for (int times = 0; times < 2; ++times)
            set.erase(set.begin() + static_cast<std::ptrdiff_t>(random() % set.size()));
    const collected got = collect(one_after_another(all));
    expect_same(got.frames, frames);
    EXPECT_EQ(got.statistics.pf_sets_repaired, 12U);
    EXPECT_EQ(got.statistics.pf_missing, 24U);
}

TEST(EdiReader, RepairsDamagedFragments) {
    const auto frames = mb::noise_frames(4);
    auto all = fragments_of(frames, protected_fragments());
    all[1][2][18] ^= 0x55;
    const collected got = collect(one_after_another(all));
    expect_same(got.frames, frames);
    EXPECT_EQ(got.statistics.pf_sets_repaired, 1U);
}

TEST(EdiReader, CountsPacketsThatCannotBeRepaired) {
    const auto frames = mb::noise_frames(8);
    auto all = fragments_of(frames, protected_fragments());
    all[3].resize(all[3].size() / 2);
    all[5].clear();
    const collected got = collect(one_after_another(all));
    EXPECT_EQ(got.frames.size(), 6U);
    EXPECT_EQ(got.statistics.pf_sets_lost, 1U);
    EXPECT_EQ(got.statistics.pf_sets_missing, 1U);
    EXPECT_EQ(got.statistics.frames_missing, 2U);
}

TEST(EdiReader, FragmentsSentTwiceOrTooLateAreCounted) {
    const auto frames = mb::noise_frames(4);
    mb::pf_options options;
    options.fragment_size = 40;
    auto all = fragments_of(frames, options);
    all[1].push_back(all[1].front());
    all[3].push_back(all[0].front());
    const collected got = collect(one_after_another(all));
    expect_same(got.frames, frames);
    EXPECT_EQ(got.statistics.pf_repeated, 2U);
}

TEST(EdiReader, AWrongHeaderCrcCostsOneFragment) {
    const auto frames = mb::noise_frames(5);
    auto all = fragments_of(frames, {});
    all[2][0][5] ^= 0x40;
    const collected got = collect(one_after_another(all));
    EXPECT_EQ(got.frames.size(), 4U);
    EXPECT_EQ(got.statistics.pf_header_crc_wrong, 1U);
}

TEST(EdiReader, ASenderThatBeginsAnewIsFollowed) {
    const auto frames = mb::noise_frames(10);
    auto first = fragments_of({frames.begin(), frames.begin() + 5}, {}, 30000);
    const auto second = fragments_of({frames.begin() + 5, frames.end()}, {}, 4);
    first.insert(first.end(), second.begin(), second.end());
    expect_same(collect(one_after_another(first)).frames, frames);
}

// A packet is refused by its header where its fragments together would be too large.
TEST(EdiReader, FragmentsThatWouldTakeTooMuchMemoryAreDropped) {
    mb::bytes header = {'P', 'F', 0, 1, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0, 16};
    header = mb::with_crc16(header);
    header.resize(header.size() + 16);
    mb::append(header, mb::af_stream(mb::noise_frames(3)));
    const collected got = collect(header);
    EXPECT_EQ(got.frames.size(), 3U);
    EXPECT_EQ(got.statistics.pf_unusable, 1U);
}

TEST(EdiReader, FileFramingMayBeDamaged) {
    const auto frames = mb::noise_frames(8);
    mb::bytes file = mb::framed_stream(frames);
    const std::size_t size = file.size() / frames.size();
    file[3 * size + 1] ^= 0xFF;
    EXPECT_EQ(collect(file).frames.size(), 8U);
}

}  // namespace

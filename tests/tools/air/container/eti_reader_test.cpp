#include "tools/air/container/eti_reader.h"

#include <gtest/gtest.h>

#include "testkit/multiplex/eti_writer.h"
#include "tests/tools/air/container/collected.h"

namespace {

namespace mb = multiplex_builder;
using air_tests::collect;
using air_tests::collected;
using air_tests::expect_same;

TEST(EtiReader, TellsTheFramesThatAreMissingByTheirCount) {
    auto frames = mb::noise_frames(20, 245);
    frames.erase(frames.begin() + 7, frames.begin() + 10);
    frames.erase(frames.begin() + 3);
    const collected got = collect(mb::raw_eti(frames));
    expect_same(got.frames, frames);
    EXPECT_EQ(got.missing_before[3], 1U);
    EXPECT_EQ(got.missing_before[6], 3U);
    EXPECT_EQ(got.statistics.frames_missing, 4U);
    EXPECT_EQ(got.statistics.gaps, 2U);
}

TEST(EtiReader, TakesARepeatedCountForNoLoss) {
    auto frames = mb::noise_frames(6);
    for (mb::logical_frame& each : frames)
        each.count = 9;
    const collected got = collect(mb::streamed_eti(frames));
    EXPECT_EQ(got.statistics.frames, 6U);
    EXPECT_EQ(got.statistics.frames_missing, 0U);
    EXPECT_EQ(got.statistics.count_repeated, 5U);
}

TEST(EtiReader, ReadsFramesWithoutStreamsAndWithoutFic) {
    auto frames = mb::noise_frames(4);
    for (mb::logical_frame& each : frames)
        each.sub_channels.clear();
    frames[2].fic.clear();
    expect_same(collect(mb::streamed_eti(frames)).frames, frames);
    expect_same(collect(mb::raw_eti(frames)).frames, frames);
}

TEST(EtiReader, ReadsTheLongerFicOfModeThree) {
    auto frames = mb::noise_frames(4);
    for (mb::logical_frame& each : frames) {
        each.mode = 3;
        each.fic.resize(128, 0x5A);
    }
    expect_same(collect(mb::raw_eti(frames)).frames, frames);
}

TEST(EtiReader, AFrameWithADamagedSyncIsLostAlone) {
    const auto frames = mb::noise_frames(8);
    for (const bool raw : {true, false}) {
        mb::bytes file = raw ? mb::raw_eti(frames) : mb::streamed_eti(frames);
        const std::size_t size = raw ? 6144 : file.size() / frames.size();
        file[3 * size + (raw ? 1 : 3)] ^= 0x10;
        file[5 * size + (raw ? 2 : 4)] ^= 0x01;
        const collected got = collect(file);
        ASSERT_EQ(got.frames.size(), 6U);
        EXPECT_EQ(got.statistics.wrong_sync, 2U);
        EXPECT_EQ(got.statistics.frames_missing, 2U);
        EXPECT_TRUE(air_tests::same_content(got.frames[3], frames[4]));
    }
}

TEST(EtiReader, FindsTheNextFrameBehindInsertedAndMissingBytes) {
    const auto frames = mb::noise_frames(9);
    for (const bool raw : {true, false}) {
        mb::bytes file = raw ? mb::raw_eti(frames) : mb::streamed_eti(frames);
        const auto size = static_cast<std::ptrdiff_t>(raw ? 6144 : file.size() / frames.size());
        file.insert(file.begin() + 6 * size + 40, 3, 0xEE);
        file.erase(file.begin() + 2 * size + 30, file.begin() + 2 * size + 47);
        const collected got = collect(file);
        EXPECT_GE(got.frames.size(), 7U);
        EXPECT_TRUE(air_tests::same_content(got.frames.back(), frames.back()));
        EXPECT_GT(got.statistics.bytes_skipped, 0U);
    }
}

TEST(EtiReader, ASyncWordInsideASubChannelIsNone) {
    auto frames = mb::noise_frames(6);
    const mb::bytes inner = mb::eti_frame(mb::logical_frame{77, mb::bytes(96), {}, 0xFF, 1}, false);
    frames[0].sub_channels[1].content = inner;
    frames[0].sub_channels[1].content.resize((inner.size() + 7) / 8 * 8);
    const mb::bytes file = mb::raw_eti(frames);
    const mb::bytes rest(file.begin() + 100, file.end());
    const collected got = collect(rest);
    ASSERT_EQ(got.frames.size(), 5U);
    EXPECT_TRUE(air_tests::same_content(got.frames[0], frames[1]));
}

TEST(EtiReader, ADamagedLengthInFrontOfAFrameCostsNothing) {
    const auto frames = mb::noise_frames(6);
    mb::bytes file = mb::streamed_eti(frames);
    const std::size_t size = file.size() / frames.size();
    file[2 * size] ^= 0x08;  // longer
    const collected got = collect(file);
    EXPECT_GE(got.frames.size(), 5U);
    EXPECT_TRUE(air_tests::same_content(got.frames.back(), frames.back()));
}

TEST(EtiReader, WrongChecksumsMarkFramesOnlyInRecordingsThatHaveThem) {
    const auto frames = mb::noise_frames(5);
    mb::bytes file = mb::raw_eti(frames);
    file[2 * 6144 + 60] ^= 0x01;  // in the FIC
    const collected got = collect(file);
    ASSERT_EQ(got.frames.size(), 5U);
    EXPECT_TRUE(got.damaged[2]);
    EXPECT_EQ(got.statistics.frames_damaged, 1U);
    EXPECT_EQ(got.statistics.body_crc_wrong, 1U);

    mb::eti_options bare;
    bare.header_crc = bare.body_crc = false;
    const collected without = collect(mb::raw_eti(frames, bare));
    EXPECT_EQ(without.statistics.frames_damaged, 0U);
    EXPECT_EQ(without.statistics.header_crc_wrong, 5U);
}

TEST(EtiReader, AFrameWithADamagedHeaderThatMovesItsPartsIsDropped) {
    const auto frames = mb::noise_frames(5);
    mb::bytes file = mb::raw_eti(frames);
    file[2 * 6144 + 11] ^= 0x01;  // a stream's length
    const collected got = collect(file);
    ASSERT_EQ(got.frames.size(), 4U);
    EXPECT_EQ(got.statistics.header_dropped, 1U);
    EXPECT_EQ(got.missing_before[2], 1U);
}

TEST(EtiReader, ADamagedCountIsNotTakenForLoss) {
    const auto frames = mb::noise_frames(5);
    mb::bytes file = mb::raw_eti(frames);
    file[2 * 6144 + 4] = 200;
    const collected got = collect(file);
    ASSERT_EQ(got.frames.size(), 5U);
    EXPECT_EQ(got.statistics.frames_missing, 0U);
    EXPECT_TRUE(got.damaged[2]);
}

TEST(EtiReader, PartsThatDoNotFitAreCounted) {
    mb::eti_options bare;
    bare.header_crc = false;
    const auto frames = mb::noise_frames(5);
    mb::bytes file = mb::streamed_eti(frames, bare);
    const std::size_t size = file.size() / frames.size();
    file[2 * size + 2 + 11] = 0xFF;
    const collected got = collect(file);
    EXPECT_EQ(got.frames.size(), 4U);
    EXPECT_EQ(got.statistics.layout_wrong, 1U);
}

TEST(EtiReader, ErroredFramesAreMarked) {
    auto frames = mb::noise_frames(3);
    frames[1].error_level = 0x0F;
    const collected got = collect(mb::raw_eti(frames));
    ASSERT_EQ(got.frames.size(), 3U);
    EXPECT_TRUE(got.damaged[1]);
    EXPECT_EQ(got.statistics.marked_as_errored, 1U);
}

TEST(EtiReader, TheStatedNumberOfFramesMayBeWrong) {
    const auto frames = mb::noise_frames(5);
    mb::bytes file = mb::framed_eti(frames);
    file[0] = 2;
    expect_same(collect(file).frames, frames);
}

}  // namespace

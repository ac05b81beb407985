// Damage of every kind: nothing crashes, what comes out was sent, and the losses are counted.
#include "testkit/multiplex/damage.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "testkit/multiplex/appending.h"
#include "testkit/multiplex/capture_writer.h"
#include "testkit/multiplex/edi_writer.h"
#include "testkit/multiplex/eti_writer.h"
#include "tests/tools/air/container/collected.h"

namespace {

namespace mb = multiplex_builder;
using air_tests::collect;
using air_tests::collected;

mb::bytes in_container(const std::vector<mb::logical_frame>& frames, unsigned number) {
    mb::pf_options fec;
    fec.fec = true;
    switch (number) {
        case 0: return mb::raw_eti(frames);
        case 1: return mb::streamed_eti(frames);
        case 2: return mb::framed_eti(frames);
        case 3: return mb::af_stream(frames);
        case 4: return mb::pf_stream(frames);
        case 5: return mb::pf_stream(frames, fec);
        default: return mb::framed_stream(frames);
    }
}
constexpr unsigned kContainers = 7;

// Frames that came out and were not sent, without those that are marked as damaged.
std::size_t invented(const collected& got, const std::vector<mb::logical_frame>& sent) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < got.frames.size(); ++i) {
        if (got.damaged[i]) continue;
        const bool known = std::any_of(sent.begin(), sent.end(), [&](const mb::logical_frame& each) {
            return air_tests::same_content(each, got.frames[i]);
        });
        count += known ? 0U : 1U;
    }
    return count;
}

TEST(Damage, WrongBytesCostTheFramesTheyAreIn) {
    const auto frames = mb::noise_frames(60);
    for (unsigned container = 0; container < kContainers; ++container) {
        const mb::bytes file = in_container(frames, container);
        for (unsigned seed = 0; seed < 20; ++seed) {
            SCOPED_TRACE("container " + std::to_string(container) + ", seed " + std::to_string(seed));
            // Not in the first frames: until a right checksum was seen, a wrong one says nothing.
            const auto begin = file.begin() + static_cast<std::ptrdiff_t>(file.size() / 10);
            mb::bytes damaged(file.begin(), begin);
            mb::append(damaged, mb::with_wrong_bytes({begin, file.end()}, 4, seed));
            const collected got = collect(damaged);
            EXPECT_EQ(invented(got, frames), 0U);
            EXPECT_GE(got.frames.size(), 50U);
        }
    }
}

TEST(Damage, HolesCostTheFramesTheyTouch) {
    const auto frames = mb::noise_frames(60);
    for (unsigned container = 0; container < kContainers; ++container) {
        const mb::bytes file = in_container(frames, container);
        for (unsigned seed = 0; seed < 20; ++seed) {
            SCOPED_TRACE("container " + std::to_string(container) + ", seed " + std::to_string(seed));
            const collected got = collect(mb::with_holes(file, 3, 200, seed));
            EXPECT_EQ(invented(got, frames), 0U);
            EXPECT_GE(got.frames.size(), 45U);
            const bool counted = got.frames.size() == frames.size() || got.statistics.frames_missing != 0 ||
                                 got.statistics.cut_short != 0 || got.statistics.bytes_skipped != 0;
            EXPECT_TRUE(counted);
        }
    }
}

TEST(Damage, CapturesAreReadUpToIt) {
    const auto frames = mb::noise_frames(30);
    std::vector<mb::bytes> packets;
    for (std::size_t i = 0; i < frames.size(); ++i)
        packets.push_back(mb::af_packet(frames[i], static_cast<std::uint16_t>(i)));
    for (const mb::bytes& file :
         {mb::pcap_file(mb::datagrams_of(packets)), mb::pcapng_file(mb::datagrams_of(packets))})
        for (unsigned seed = 0; seed < 60; ++seed) {
            const collected got = collect(mb::with_wrong_bytes(file, 6, seed));
            EXPECT_EQ(invented(got, frames), 0U) << "seed " << seed;
        }
}

// What looks like the beginning of a frame or a packet everywhere must not cost more than once.
TEST(Damage, RepeatedBeginningsCostLinearWork) {
    mb::bytes syncs;
    mb::bytes packets;
    for (int i = 0; i < 100000; ++i) {
        syncs.insert(syncs.end(), {0x10, 0x18, 0xFF, 0x07, 0x3A, 0xB6});
        packets.insert(packets.end(), {'A', 'F', 0, 0, 0xF0, 0, 0, 1, 0x90, 'T'});
    }
    const auto frames = mb::noise_frames(3);
    for (mb::bytes start : {mb::streamed_eti(frames), mb::af_stream(frames)})
        for (const mb::bytes& rest : {syncs, packets}) {
            mb::bytes file = start;
            file.insert(file.end(), rest.begin(), rest.end());
            EXPECT_GE(collect(file).frames.size(), 2U);
        }
    EXPECT_TRUE(collect(packets).frames.empty());
    EXPECT_TRUE(collect(syncs).frames.empty());
}

}  // namespace

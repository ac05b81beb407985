// From frames to objects: carousels are found, begun with what was sent before they were announced, followed
// to other places, and bounded.
#include "tools/air/reception/multiplex_reception.h"

#include <gtest/gtest.h>

#include <random>

#include "testkit/multiplex/fic_builder.h"
#include "testkit/on_air/spi_multiplex.h"
#include "tests/tools/air/reception/received_multiplex.h"

namespace {

namespace kit = carousel_kit;
namespace mb = multiplex_builder;
using air_test::received_multiplex;
using dabspi::air::delivery;
using strings = std::vector<std::string>;

kit::object object_of(unsigned id, const std::string& name, std::size_t size = 700) {
    kit::object made;
    made.transport_id = id;
    made.name = name;
    for (std::size_t i = 0; i < size; ++i)
        made.body.push_back(static_cast<std::uint8_t>(i * i / 5 + id));
    return made;
}

// Two objects, `rounds` times round.
on_air::multiplex with_carousel(unsigned rounds = 1, bool fec = false) {
    std::vector<kit::bytes> groups;
    for (unsigned i = 0; i < rounds; ++i)
        kit::append(groups, kit::directory_round(9, {object_of(1, "first"), object_of(2, "second")}));
    on_air::multiplex sent;
    sent.spi.emplace_back();
    sent.sub_channels.push_back({30, 192, on_air::stream_of(5, groups, fec), fec});
    return sent;
}

std::vector<mb::logical_frame> all_frames(const on_air::multiplex& sent) {
    return on_air::frames_of(sent, on_air::frames_needed(sent) + 20);
}

TEST(MultiplexReception, GivesTheObjectsOfTheCarouselWithTheirComponent) {
    received_multiplex got;
    got.feed_all(all_frames(with_carousel()));
    EXPECT_EQ(got.names(), (strings{"first", "second"}));
    EXPECT_EQ(got.objects.at(0).sid, 0xE1C00098U);
    EXPECT_EQ(got.objects.at(0).address, 5U);
    EXPECT_EQ(got.objects.at(0).body, object_of(1, "first").body);
    EXPECT_EQ(got.minutes, strings{"2026-03-02 10:30"});
}

TEST(MultiplexReception, BeginsWithWhatWasSentBeforeTheAnnouncement) {
    on_air::multiplex sent = with_carousel();
    sent.spi[0].announced_from = 60;
    received_multiplex got;
    got.feed_all(on_air::frames_of(sent, 120));
    EXPECT_EQ(got.names(), (strings{"first", "second"}));
    EXPECT_LT(got.objects.at(0).frame, 60U);
}

TEST(MultiplexReception, KeepsNoMoreThanTheLastSeconds) {
    on_air::multiplex sent = with_carousel();
    sent.spi[0].announced_from = 500;
    received_multiplex got;
    got.feed_all(on_air::frames_of(sent, 600));
    EXPECT_EQ(got.names(), strings{});
}

TEST(MultiplexReception, ReadsASecondCarouselOfTheSubChannelThatIsAnnouncedLater) {
    on_air::multiplex sent = with_carousel();
    kit::packetizer packets(4);
    kit::bytes both;
    const auto first = kit::directory_round(9, {object_of(1, "first"), object_of(2, "second")});
    const auto second = kit::header_round({object_of(3, "third"), object_of(4, "fourth")});
    for (std::size_t i = 0; i < std::max(first.size(), second.size()); ++i) {
        if (i < first.size()) kit::append(both, packets.joined(5, first[i]));
        if (i < second.size()) kit::append(both, packets.joined(6, second[i]));
    }
    sent.sub_channels[0].stream = both;
    sent.spi.push_back({0xE1C00099, 0, 8, 30, 6, "Other guide", 40});
    received_multiplex got;
    got.feed_all(on_air::frames_of(sent, 100));
    EXPECT_EQ(got.names(), (strings{"first", "second", "third", "fourth"}));
    EXPECT_EQ(got.objects.at(3).sid, 0xE1C00099U);
}

TEST(MultiplexReception, FollowsACarouselThatIsCutByTheAnnouncement) {
    // The second carousel is announced in every frame of its transmission in turn: nothing is lost or
    // doubled.
    for (unsigned frame = 1; frame < 16; ++frame) {
        on_air::multiplex sent = with_carousel(2);
        kit::bytes other = on_air::stream_of(6, kit::directory_round(3, {object_of(3, "third", 1500)}));
        kit::append(other, sent.sub_channels[0].stream);
        sent.sub_channels[0].stream = other;
        sent.spi.push_back({0xE1C00099, 0, 8, 30, 6, "Other guide", frame});
        received_multiplex got;
        got.feed_all(on_air::frames_of(sent, 60));
        EXPECT_EQ(std::count_if(got.objects.begin(), got.objects.end(),
                                [](const auto& each) { return each.name == "third"; }),
                  1)
            << frame;
    }
}

TEST(MultiplexReception, GivesOneCarouselOfSeveralServicesOnce) {
    on_air::multiplex sent = with_carousel();
    sent.spi.push_back({0xC222, 1, 7, 30, 5, "With a guide", 0});
    received_multiplex got;
    got.feed_all(all_frames(sent));
    EXPECT_EQ(got.names(), (strings{"first", "second"}));
    EXPECT_EQ(got.objects.at(1).sid, 0xE1C00098U);
}

TEST(MultiplexReception, FollowsTheCarouselToAnotherPlace) {
    on_air::multiplex sent = with_carousel(2);
    auto frames = all_frames(sent);
    on_air::multiplex moved = with_carousel();
    moved.spi[0].sub_channel = 31;
    moved.spi[0].address = 6;
    moved.sub_channels[0].id = 31;
    moved.sub_channels[0].stream =
        on_air::stream_of(6, kit::directory_round(10, {object_of(1, "first"), object_of(3, "third")}));
    const auto behind =
        on_air::frames_of(moved, on_air::frames_needed(moved) + 20, static_cast<unsigned>(frames.size()));
    frames.insert(frames.end(), behind.begin(), behind.end());
    received_multiplex got(delivery::once);
    got.feed_all(frames);
    EXPECT_EQ(got.names(), (strings{"first", "second", "third"}));
    EXPECT_EQ(got.objects.back().address, 6U);
    ASSERT_EQ(got.reception.carousels().size(), 1U);
    EXPECT_EQ(got.reception.carousels()[0].component.sub_channel, 31);
    EXPECT_EQ(got.reception.carousels()[0].carousel.directory_versions, 2U);
}

TEST(MultiplexReception, FillsWhatIsMissingFromTheNextRound) {
    const auto frames = all_frames(with_carousel(3));
    for (std::size_t lost = 1; lost < 10; ++lost) {
        received_multiplex got(delivery::once);
        for (std::size_t i = 0; i < frames.size(); ++i)
            if (i != lost) got.feed(frames[i], i == lost + 1 ? 1 : 0);
        got.reception.finish();
        EXPECT_EQ(got.objects.size(), 2U) << lost;
        EXPECT_EQ(got.reception.frames(), frames.size());
    }
}

TEST(MultiplexReception, RepairsAMissingFrameWithFecAlsoWhenThatIsAnnouncedLate) {
    on_air::multiplex sent = with_carousel(2, true);
    auto frames = all_frames(sent);
    // Until frame 6 the FIC says nothing of FEC.
    on_air::multiplex silent = sent;
    silent.sub_channels[0].fec = false;
    const auto without = on_air::frames_of(silent, 6);
    std::copy(without.begin(), without.end(), frames.begin());
    received_multiplex got;
    for (std::size_t i = 0; i < frames.size(); ++i)
        if (i != 14) got.feed(frames[i], i == 15 ? 1 : 0);
    got.reception.finish();
    const auto counts = got.reception.sub_channels().at(0).counts;
    EXPECT_EQ(counts.fec_sets_repaired, 1U);
    EXPECT_EQ(got.objects.size(), 4U);
}

TEST(MultiplexReception, SeededLossGivesOnlyWholeObjects) {
    const auto frames = all_frames(with_carousel(12, true));
    std::size_t received = 0;
    for (unsigned seed = 0; seed < 20; ++seed) {
        std::mt19937 random(seed);
        received_multiplex got;
        std::uint32_t missing = 0;
        for (mb::logical_frame frame : frames) {
            if (random() % 20 == 0) {
                ++missing;
                continue;
            }
            if (random() % 10 == 0)
                frame.sub_channels[0].content[random() % frame.sub_channels[0].content.size()] ^= 0x40;
            got.feed(frame, missing);
            missing = 0;
        }
        got.reception.finish();
        for (const auto& each : got.objects)
            ASSERT_EQ(each.body, object_of(each.name == "first" ? 1 : 2, each.name).body);
        received += got.objects.size();
    }
    EXPECT_GT(received, 20U * 12);
}

TEST(MultiplexReception, SharesItsMemoryBetweenCarousels) {
    on_air::multiplex sent;
    for (unsigned i = 0; i < 12; ++i)
        sent.spi.push_back({0xE1C00000 + i, 0, i, 30, i + 1, "Guide", 0});
    sent.sub_channels.push_back({30, 192, {}, false});
    received_multiplex got;
    got.feed_all(on_air::frames_of(sent, 60));
    EXPECT_EQ(got.reception.carousels().size(), 8U);
    EXPECT_GT(got.reception.carousels_beyond_limit(), 0U);
}

TEST(MultiplexReception, BoundedWorkForAnAnnouncementThatComesAndGoes) {
    // 0/3 says now this sub-channel, now that, in turns of five frames: each time the carousel begins with
    // what is kept of the other, which is the same.
    on_air::multiplex sent = with_carousel(1);
    sent.sub_channels.push_back({33, 192, sent.sub_channels[0].stream, false});
    on_air::multiplex other = sent;
    other.spi[0].sub_channel = 33;
    const auto here = on_air::frames_of(sent, 400);
    const auto there = on_air::frames_of(other, 400);
    received_multiplex got;
    for (unsigned i = 0; i < 20'000; ++i)
        got.feed((i % 10 < 5 ? here : there)[i % 400]);
    got.reception.finish();
    EXPECT_EQ(got.reception.carousels().size(), 1U);
    EXPECT_LT(got.objects.size(), 2U * (20'000 + 3'344) / 20);
}

}  // namespace

// What comes out of a carousel that is sent as it should be: header mode, directory mode, compression.
#include "tools/air/mot/carousel.h"

#include <gtest/gtest.h>

#include "tests/tools/air/mot/received_objects.h"
#include "tests/tools/air/packets/collected_groups.h"

namespace {

namespace kit = carousel_kit;
using namespace dabspi::air;
using air_test::object_of;
using air_test::pattern;
using air_test::played_carousel;
using names = std::vector<std::string>;

class Carousel : public ::testing::Test {
 protected:
    const std::vector<kit::object> three = {object_of(11, "a", pattern(950, 1)),
                                            object_of(12, "b", pattern(1, 2)),
                                            object_of(13, "c", pattern(400, 3))};
};

TEST_F(Carousel, DirectoryModeGivesEveryObjectEveryRound) {
    played_carousel played;
    for (int i = 0; i < 3; ++i)
        played.play(kit::directory_round(7, three));
    EXPECT_EQ(played.sink.names(), (names{"a", "b", "c", "a", "b", "c", "a", "b", "c"}));
    EXPECT_EQ(played.sink.all[0].body, three[0].body);
    EXPECT_EQ(played.sink.all[0].transport_id, 11U);
    EXPECT_EQ(played.sink.all[0].header.content_type, 7);
    EXPECT_TRUE(played.sink.all[2].is_new);
    EXPECT_FALSE(played.sink.all[3].is_new);
    const carousel_statistics statistics = played.carousel.statistics();
    EXPECT_EQ(statistics.mode, carousel_mode::directory);
    EXPECT_EQ(statistics.directory_versions, 1U);
    EXPECT_EQ(statistics.directory_times.count, 3U);
}

TEST_F(Carousel, HeaderModeGivesTheSame) {
    played_carousel played;
    for (int i = 0; i < 2; ++i)
        played.play(kit::header_round(three));
    EXPECT_EQ(played.sink.names(), (names{"a", "b", "c", "a", "b", "c"}));
    EXPECT_EQ(played.carousel.statistics().mode, carousel_mode::headers);
}

TEST_F(Carousel, OnceGivesEachVersionOnce) {
    played_carousel played(delivery::once);
    for (int i = 0; i < 3; ++i)
        played.play(kit::directory_round(7, three));
    EXPECT_EQ(played.sink.names(), (names{"a", "b", "c"}));
    EXPECT_EQ(played.object("a")->times.count, 3U);
    EXPECT_EQ(played.object("a")->versions, 1U);
}

TEST_F(Carousel, TheFrameOfTheLastSegmentIsTheObjects) {
    played_carousel played;
    played.play(kit::directory_round(7, three));
    EXPECT_EQ(played.sink.all[0].frame, 10U);  // the directory is one group, this body ten
}

TEST_F(Carousel, CompressedDirectoriesAreDirectories) {
    played_carousel played;
    played.play(kit::directory_round(7, three, 50, true));
    EXPECT_EQ(played.sink.names(), (names{"a", "b", "c"}));
    EXPECT_TRUE(played.carousel.statistics().directories.front().compressed);
}

TEST_F(Carousel, BothFormsOfADirectoryAreOneVersion) {
    played_carousel played;
    played.play(kit::directory_round(7, three, 100, false));
    played.play(kit::directory_round(7, three, 100, true));
    played.play(kit::directory_round(7, three, 100, false));
    EXPECT_EQ(played.carousel.statistics().directory_versions, 1U);
    EXPECT_EQ(played.carousel.statistics().directory_times.count, 3U);
    EXPECT_EQ(played.sink.all.size(), 9U);
}

TEST_F(Carousel, CompressedBodiesAreUnpacked) {
    const kit::bytes plain = pattern(3000, 5);
    for (const kit::bytes& packed : {kit::gzip(plain), kit::zlib_packed(plain)}) {
        kit::object object = object_of(5, "packed", packed);
        object.more_parameters = kit::parameter(0x11, {1});
        played_carousel played;
        for (int i = 0; i < 2; ++i)
            played.play(kit::directory_round(7, {object}));
        ASSERT_EQ(played.sink.all.size(), 2U);
        EXPECT_EQ(played.sink.all[1].body, plain);
        EXPECT_TRUE(played.sink.all[1].was_compressed);
        EXPECT_FALSE(played.sink.all[1].is_new);
        EXPECT_EQ(played.object("packed")->unpacked_size, plain.size());
    }
}

TEST_F(Carousel, WhatCannotBeUnpackedIsDroppedAndCounted) {
    kit::object damaged = object_of(1, "damaged", pattern(100, 1));
    damaged.more_parameters = kit::parameter(0x11, {1});
    kit::object unknown = object_of(2, "unknown", kit::gzip(pattern(100, 1)));
    unknown.more_parameters = kit::parameter(0x11, {2});
    kit::object large = object_of(3, "large", kit::gzip(kit::bytes(5000, 0)));
    large.more_parameters = kit::parameter(0x11, {1});
    kit::object plain = object_of(4, "plain", pattern(10, 1));
    plain.more_parameters = kit::parameter(0x11, {0});
    carousel_limits limits;
    limits.unpacked = 4999;
    played_carousel played(delivery::every, limits);
    for (int i = 0; i < 2; ++i)
        played.play(kit::directory_round(7, {damaged, unknown, large, plain}));
    EXPECT_EQ(played.sink.names(), (names{"plain", "plain"}));
    EXPECT_EQ(played.dropped(carousel_drop::not_unpacked), 2U);
    EXPECT_EQ(played.dropped(carousel_drop::unknown_compression), 2U);
    EXPECT_EQ(played.dropped(carousel_drop::too_large_unpacked), 2U);
    EXPECT_EQ(played.object("large")->state, object_state::unusable);
    EXPECT_EQ(played.object("large")->cause, carousel_drop::too_large_unpacked);
}

TEST_F(Carousel, ScrambledObjectsAreLeftOutAndCounted) {
    kit::object scrambled = object_of(1, "scrambled", pattern(250, 1));
    scrambled.more_parameters = kit::parameter(0x23, {1, 2});
    played_carousel played;
    played.play(kit::directory_round(7, {scrambled, three[0]}));
    played.play(kit::segment_groups(kit::kScrambledGroup, 11, pattern(150, 2)));
    EXPECT_EQ(played.sink.names(), names{"a"});
    EXPECT_EQ(played.dropped(carousel_drop::scrambled), 3U + 2);
    EXPECT_EQ(played.object("scrambled")->state, object_state::scrambled);
}

TEST_F(Carousel, AnObjectWithoutBodyBytesIsAnObject) {
    played_carousel played;
    played.play(kit::directory_round(7, {object_of(1, "empty", {})}));
    EXPECT_EQ(played.sink.names(), names{"empty"});
}

TEST_F(Carousel, AnObjectWithoutNameIsDropped) {
    kit::object nameless = object_of(1, "", pattern(10, 1));
    nameless.name = std::nullopt;
    played_carousel played;
    played.play(kit::directory_round(7, {nameless}));
    EXPECT_TRUE(played.sink.all.empty());
    EXPECT_EQ(played.dropped(carousel_drop::without_name), 1U);
}

TEST_F(Carousel, AHeaderMayComeBehindItsBody) {
    played_carousel played;
    std::vector<kit::bytes> groups = kit::segment_groups(kit::kBodyGroup, 11, three[0].body);
    kit::append(groups, kit::segment_groups(kit::kHeaderGroup, 11, kit::header(three[0])));
    played.play(groups);
    EXPECT_EQ(played.sink.names(), names{"a"});
    EXPECT_TRUE(played.object("a")->before_listing);
    EXPECT_EQ(played.dropped(carousel_drop::unlisted), 1U);
}

TEST_F(Carousel, HeaderUpdatesChangeParametersAndAreNoObject) {
    kit::object update;
    update.transport_id = 11;
    update.content_type = 5;
    update.content_subtype = 0;
    update.name = std::nullopt;
    update.more_parameters = kit::parameter(0x0A, {9});
    played_carousel played;
    played.play(kit::header_round({three[0]}));
    played.play(kit::segment_groups(kit::kHeaderGroup, 11, kit::header(update)));
    played.play(kit::segment_groups(kit::kBodyGroup, 11, three[0].body));
    ASSERT_EQ(played.sink.names(), (names{"a", "a"}));
    EXPECT_EQ(played.sink.all[1].header.priority, 9);
    EXPECT_FALSE(played.sink.all[1].is_new);
    EXPECT_EQ(played.carousel.counts().header_updates, 1U);
    update.transport_id = 99;
    played.play(kit::segment_groups(kit::kHeaderGroup, 99, kit::header(update)));
    EXPECT_EQ(played.dropped(carousel_drop::update_without_object), 1U);
}

TEST_F(Carousel, StatisticsTellSegmentsRoundsAndBytes) {
    played_carousel played;
    const auto round = kit::directory_round(7, three);
    for (int i = 0; i < 4; ++i)
        played.play(round);
    played.play(kit::segment_group(kit::kBodyGroup, 11, 0, false, pattern(100, 1)));
    const auto a = played.object("a");
    ASSERT_TRUE(a);
    EXPECT_EQ(a->segments, 10U);
    EXPECT_EQ(a->segments_held, 10U);
    EXPECT_EQ(a->times.count, 4U);
    EXPECT_EQ(a->times.mean_interval(), static_cast<double>(round.size()));
    EXPECT_EQ(a->times.longest_interval, round.size());
    EXPECT_EQ(played.carousel.statistics().cycle(), static_cast<double>(round.size()));
    EXPECT_EQ(a->bytes_on_air, 4U * (950 + 10 * 11) + 111);
    const carousel_statistics all = played.carousel.statistics();
    std::uint64_t sum = all.directory_bytes + all.other_bytes;
    for (const auto& each : all.objects)
        sum += each.bytes_on_air;
    EXPECT_EQ(sum, all.counts.bytes);
}

TEST_F(Carousel, OfAnIncompleteObjectTheSegmentsAreEstimated) {
    played_carousel played;
    played.play(kit::segment_groups(kit::kDirectoryGroup, 7, kit::directory(three)));
    played.play(kit::segment_group(kit::kBodyGroup, 11, 4, false, pattern(100, 1)));
    EXPECT_EQ(played.object("a")->segments_held, 1U);
    EXPECT_EQ(played.object("a")->segments, 10U);
    EXPECT_EQ(played.object("a")->state, object_state::incomplete);
}

}  // namespace

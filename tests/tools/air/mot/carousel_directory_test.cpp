// Directories that change, shrink, are empty, age, or come after their bodies.
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

class CarouselDirectory : public ::testing::Test {
 protected:
    void play_directory(unsigned id, const std::vector<kit::object>& objects) {
        played.play(kit::segment_groups(kit::kDirectoryGroup, id, kit::directory(objects)));
    }
    void play_body(const kit::object& of) {
        played.play(kit::segment_groups(kit::kBodyGroup, of.transport_id, of.body));
    }
    const kit::object a = object_of(11, "a", pattern(350, 1));
    const kit::object b = object_of(12, "b", pattern(250, 2));
    const kit::object c = object_of(13, "c", pattern(150, 3));
    played_carousel played;
};

TEST_F(CarouselDirectory, AnEmptyDirectoryIsLegal) {
    for (int i = 0; i < 49; ++i)
        play_directory(7, {});
    play_body(a);
    EXPECT_TRUE(played.sink.all.empty());
    const carousel_statistics all = played.carousel.statistics();
    EXPECT_EQ(all.directory_versions, 1U);
    EXPECT_EQ(all.directory_times.count, 49U);
    EXPECT_EQ(all.directories.front().objects, 0);
    EXPECT_EQ(all.unlisted_bodies, 1U);
}

TEST_F(CarouselDirectory, AnotherOneReplacesItAndTellsWhatChanged) {
    played.play(kit::directory_round(7, {a, b}));
    kit::object changed = object_of(14, "b", pattern(250, 9));
    played.play(kit::directory_round(8, {a, changed, c}));
    played.play(kit::directory_round(9, {c}));
    EXPECT_EQ(played.sink.names(), (names{"a", "b", "a", "b", "c", "c"}));
    EXPECT_FALSE(played.sink.all[2].is_new);
    EXPECT_TRUE(played.sink.all[3].is_new);
    const carousel_statistics all = played.carousel.statistics();
    ASSERT_EQ(all.directories.size(), 3U);
    EXPECT_EQ(all.directories[0].added.first, (names{"a", "b"}));
    EXPECT_EQ(all.directories[1].added.first, names{"c"});
    EXPECT_EQ(all.directories[1].changed.first, names{"b"});
    EXPECT_EQ(all.directories[1].removed.count, 0U);
    EXPECT_EQ(all.directories[2].removed.first, (names{"a", "b"}));
    EXPECT_EQ(all.objects.size(), 1U);
    EXPECT_EQ(all.gone_count, 3U);
    EXPECT_EQ(all.gone.front().name, "b");
    EXPECT_TRUE(all.gone.front().gone);
}

TEST_F(CarouselDirectory, ObjectsNoLongerListedAreNotHandedOn) {
    played.play(kit::directory_round(7, {a, b}));
    play_directory(8, {b});
    play_body(a);
    EXPECT_EQ(played.sink.names(), (names{"a", "b"}));
    EXPECT_EQ(played.dropped(carousel_drop::unlisted), 1U);
}

TEST_F(CarouselDirectory, ABodyBeforeItsDirectoryIsKept) {
    play_body(a);
    play_body(b);
    EXPECT_TRUE(played.sink.all.empty());
    play_directory(7, {b, a});
    EXPECT_EQ(played.sink.names(), (names{"b", "a"}));
    EXPECT_TRUE(played.object("a")->before_listing);
    play_directory(7, {b, a});
    EXPECT_EQ(played.sink.all.size(), 2U);
}

TEST_F(CarouselDirectory, HalfABodyBeforeItsDirectoryIsKeptToo) {
    const auto groups = kit::segment_groups(kit::kBodyGroup, 11, a.body);
    played.play(groups[0]);
    played.play(groups[1]);
    play_directory(7, {a});
    played.play(groups[2]);
    played.play(groups[3]);
    EXPECT_EQ(played.sink.names(), names{"a"});
}

TEST_F(CarouselDirectory, UnlistedBodiesAreKeptWithinABound) {
    carousel_limits limits;
    limits.unlisted = 3000;
    played_carousel bounded(delivery::every, limits);
    std::vector<kit::object> all;
    for (unsigned i = 0; i < 50; ++i) {
        all.push_back(object_of(100 + i, "n" + std::to_string(i), pattern(500, i)));
        bounded.play(kit::segment_groups(kit::kBodyGroup, 100 + i, all.back().body));
        EXPECT_LE(bounded.carousel.statistics().memory, 3000U);
    }
    EXPECT_GT(bounded.dropped(carousel_drop::memory_limit), 40U);
    bounded.play(kit::segment_groups(kit::kDirectoryGroup, 7, kit::directory(all)));
    ASSERT_FALSE(bounded.sink.all.empty());
    EXPECT_EQ(bounded.sink.names().back(), "n49");
}

TEST_F(CarouselDirectory, TheSameTransportIdentifierWithOtherContentReplacesItToo) {
    played.play(kit::directory_round(7, {a}));
    played.play(kit::directory_round(7, {a, b}));
    EXPECT_EQ(played.sink.names(), (names{"a", "a", "b"}));
    EXPECT_EQ(played.carousel.statistics().directory_versions, 2U);
}

TEST_F(CarouselDirectory, ReturningToAnEarlierOneIsAReplacement) {
    play_directory(7, {a});
    play_directory(8, {b});
    play_directory(7, {a});
    EXPECT_EQ(played.carousel.statistics().directory_versions, 3U);
    play_body(a);
    EXPECT_EQ(played.sink.names(), names{"a"});
}

TEST_F(CarouselDirectory, AnIllFormedOneLeavesTheCurrentOne) {
    play_directory(7, {a});
    kit::bytes damaged = kit::directory({a, b});
    damaged[5] = 3;  // objects that are not there
    played.play(kit::segment_groups(kit::kDirectoryGroup, 8, damaged));
    kit::bytes packed = kit::compressed_directory(kit::directory({b}));
    packed[20] ^= 0x55;
    played.play(kit::segment_groups(kit::kCompressedGroup, 9, packed));
    played.play(kit::segment_groups(kit::kCompressedGroup, 9, packed));
    played.play(
        kit::segment_groups(kit::kCompressedGroup, 10, kit::compressed_directory(kit::directory({b}), 3)));
    play_body(a);
    EXPECT_EQ(played.sink.names(), names{"a"});
    EXPECT_EQ(played.dropped(carousel_drop::directory_ill_formed), 1U);
    EXPECT_EQ(played.dropped(carousel_drop::directory_not_unpacked), 2U);
}

TEST_F(CarouselDirectory, OnesThatUnpackToTooMuchAreDropped) {
    carousel_limits limits;
    limits.directory = 5000;
    played_carousel small(delivery::every, limits);
    kit::directory_fields fields;
    fields.parameters = kit::parameter(0x3F, kit::bytes(6000, 0));
    const kit::bytes large = kit::directory({a}, fields);
    small.play(kit::segment_groups(kit::kCompressedGroup, 7, kit::compressed_directory(large)));
    small.play(kit::segment_groups(kit::kDirectoryGroup, 7, large));
    EXPECT_EQ(small.dropped(carousel_drop::directory_too_large), 2U);
    EXPECT_EQ(small.carousel.statistics().directory_versions, 0U);
}

TEST_F(CarouselDirectory, ListedTwiceTheFirstCounts) {
    kit::object twin = b;
    twin.transport_id = a.transport_id;
    play_directory(7, {a, twin});
    play_body(a);
    EXPECT_EQ(played.sink.names(), names{"a"});
    EXPECT_EQ(played.dropped(carousel_drop::listed_twice), 1U);
}

TEST_F(CarouselDirectory, AfterAnHourWithoutDirectoryBodiesWaitForIt) {
    play_directory(7, {a, b});
    played.frame += 150'000;
    play_body(a);
    play_body(b);
    EXPECT_TRUE(played.sink.all.empty());
    play_directory(7, {a, b});
    EXPECT_EQ(played.sink.names(), (names{"a", "b"}));
}

TEST_F(CarouselDirectory, HeadersBesideADirectoryAreDropped) {
    play_directory(7, {a});
    played.play(kit::header_round({c}));
    EXPECT_TRUE(played.sink.all.empty());
    EXPECT_EQ(played.dropped(carousel_drop::header_beside_directory), 1U);
}

TEST_F(CarouselDirectory, ASenderMayChangeItsMode) {
    played.play(kit::header_round({a}));
    played.play(kit::directory_round(7, {b}));
    EXPECT_EQ(played.carousel.statistics().mode, carousel_mode::directory);
    play_body(a);
    played.frame += 200'000;
    played.play(kit::header_round({c}));
    EXPECT_EQ(played.sink.names(), (names{"a", "b", "c"}));
    EXPECT_EQ(played.carousel.statistics().mode, carousel_mode::headers);
}

TEST_F(CarouselDirectory, ParametersArePartOfItsStatistics) {
    kit::directory_fields fields;
    fields.period_tenths = 240;
    fields.segment_size = 100;
    fields.parameters = {0x00, 0x41, 0x01};
    played.play(kit::segment_groups(kit::kDirectoryGroup, 7, kit::directory({}, fields)));
    const directory_version version = played.carousel.statistics().directories.front();
    EXPECT_EQ(version.period_tenths, 240U);
    EXPECT_EQ(version.segment_size, 100);
    ASSERT_EQ(version.parameters.size(), 2U);
    EXPECT_EQ(version.parameters[1].second, kit::bytes{1});
}

}  // namespace

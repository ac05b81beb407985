// Streams made to cost much: memory stays within its bound, and the work within what was sent.
#include <gtest/gtest.h>

#include "tests/tools/air/mot/received_objects.h"
#include "tests/tools/air/packets/collected_groups.h"

namespace {

namespace kit = carousel_kit;
using namespace dabspi::air;
using air_test::object_of;
using air_test::pattern;
using air_test::played_carousel;

TEST(HostileCarousel, AllSegmentNumbersOfOneBody) {
    played_carousel played;
    played.play(kit::segment_groups(kit::kDirectoryGroup, 7,
                                    kit::directory({object_of(1, "x", kit::bytes(32768, 7))})));
    for (unsigned n = 32768; n-- > 0;)
        played.play(kit::segment_group(kit::kBodyGroup, 1, n, n == 32767, {7}));
    ASSERT_EQ(played.sink.all.size(), 1U);
    EXPECT_EQ(played.sink.all[0].body.size(), 32768U);
}

TEST(HostileCarousel, TheHighestNumberOfEveryTransportIdentifier) {
    carousel_limits limits;
    limits.memory = 1 << 20;
    limits.unlisted = 1 << 19;
    played_carousel played(delivery::every, limits);
    for (unsigned id = 0; id < 65536; ++id)
        played.play(kit::segment_group(kit::kBodyGroup, id, 32767, id % 2 == 0, {1}));
    EXPECT_LE(played.carousel.statistics().memory, limits.memory);
    EXPECT_GT(played.dropped(carousel_drop::memory_limit), 60000U);
}

TEST(HostileCarousel, ABodyWithoutEndGoesWhenItIsTooLarge) {
    carousel_limits limits;
    limits.memory = 100'000;
    played_carousel played(delivery::every, limits);
    played.play(
        kit::segment_groups(kit::kDirectoryGroup, 7, kit::directory({object_of(1, "x", kit::bytes(10, 7))})));
    const kit::bytes data = pattern(8000, 1);
    for (unsigned n = 0; n < 1000; ++n) {
        played.play(kit::segment_group(kit::kBodyGroup, 1, n, false, data));
        EXPECT_LE(played.carousel.statistics().memory, limits.memory);
    }
    EXPECT_GT(played.dropped(carousel_drop::memory_limit), 50U);
}

TEST(HostileCarousel, DirectoriesThatChangeEachTime) {
    carousel_limits limits;
    limits.memory = 8 << 20;
    played_carousel played(delivery::every, limits);
    std::vector<kit::object> many;
    for (unsigned i = 0; i < 3000; ++i)
        many.push_back(object_of(i, "name " + std::to_string(i), kit::bytes(1, 1)));
    const kit::bytes large = kit::directory(many);
    for (unsigned turn = 0; turn < 10; ++turn) {
        played.play(kit::segment_groups(kit::kDirectoryGroup, 100 + turn, large, 8000));
        played.play(kit::segment_groups(kit::kDirectoryGroup, 200 + turn, kit::directory({})));
    }
    const carousel_statistics all = played.carousel.statistics();
    EXPECT_EQ(all.directory_versions, 20U);
    EXPECT_EQ(all.gone_count, 30000U);
    EXPECT_EQ(all.gone.size(), carousel_limits().gone_objects);
    EXPECT_LE(all.memory, limits.memory);
    EXPECT_EQ(all.directories[0].added.count, 3000U);
    EXPECT_EQ(all.directories[0].added.first.size(), directory_version::kNamesKept);
}

TEST(HostileCarousel, MoreObjectsThanAreKept) {
    carousel_limits limits;
    limits.objects = 10;
    played_carousel played(delivery::every, limits);
    std::vector<kit::object> many;
    for (unsigned i = 0; i < 15; ++i)
        many.push_back(object_of(i, "n" + std::to_string(i), kit::bytes(1, 1)));
    played.play(kit::directory_round(7, many));
    EXPECT_EQ(played.sink.all.size(), 10U);
    EXPECT_EQ(played.dropped(carousel_drop::objects_beyond_limit), 5U);
    played_carousel headers(delivery::every, limits);
    headers.play(kit::header_round(many));
    EXPECT_EQ(headers.sink.all.size(), 15U);
    EXPECT_EQ(headers.carousel.statistics().objects.size(), 10U);
    EXPECT_EQ(headers.carousel.statistics().gone_count, 5U);
}

TEST(HostileCarousel, HeadersTakeHalfOfTheMemoryAtMost) {
    carousel_limits limits;
    limits.memory = 200'000;
    std::vector<kit::object> many;
    for (unsigned i = 0; i < 1000; ++i)
        many.push_back(object_of(i, "n" + std::to_string(i), pattern(500, i)));
    for (const bool headers : {false, true}) {
        played_carousel played(delivery::every, limits);
        played.play(headers ? kit::header_round(many) : kit::directory_round(7, many));
        EXPECT_LE(played.carousel.statistics().memory, limits.memory);
        EXPECT_GT(played.dropped(carousel_drop::objects_beyond_limit), 700U);
        EXPECT_GT(played.sink.all.size(), 50U);
    }
}

TEST(HostileCarousel, LongNamesAreShortenedInStatisticsOnly) {
    std::string name;
    while (name.size() < 3000)
        name += "€";
    played_carousel played;
    played.play(kit::directory_round(7, {object_of(1, name, {1})}));
    ASSERT_EQ(played.sink.all.size(), 1U);
    EXPECT_EQ(played.sink.all[0].name, name);
    EXPECT_LE(played.carousel.statistics().objects.front().name.size(), 203U);
}

TEST(HostileCarousel, UpdatesDoNotGrowAHeaderWithoutEnd) {
    played_carousel played;
    played.play(kit::header_round({object_of(1, "x", {1})}));
    for (unsigned id = 0; id < 64; ++id) {
        kit::object update;
        update.transport_id = 1;
        update.content_type = 5;
        update.content_subtype = 0;
        update.name = std::nullopt;
        update.more_parameters = kit::parameter(id, kit::bytes(7000, 1));
        played.play(kit::segment_groups(kit::kHeaderGroup, 1, kit::header(update), 8000));
    }
    EXPECT_GT(played.dropped(carousel_drop::header_ill_formed), 50U);
}

TEST(HostileCarousel, UnpackedBodiesCountAsMemory) {
    carousel_limits limits;
    limits.memory = 1 << 20;
    played_carousel played(delivery::every, limits);
    std::vector<kit::object> many;
    for (unsigned i = 0; i < 20; ++i) {
        many.push_back(object_of(i, "n" + std::to_string(i), kit::gzip(kit::bytes(200'000, 0))));
        many.back().more_parameters = kit::parameter(0x11, {1});
    }
    for (int round = 0; round < 2; ++round)
        played.play(kit::directory_round(7, many));
    EXPECT_EQ(played.sink.all.size(), 40U);
    EXPECT_LE(played.carousel.statistics().memory, limits.memory);
}

}  // namespace

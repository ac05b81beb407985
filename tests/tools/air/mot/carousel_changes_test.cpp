// Objects that change under way, and what was lost and comes again.
#include <gtest/gtest.h>

#include "testkit/ensemble/dice.h"
#include "tests/tools/air/mot/received_objects.h"
#include "tests/tools/air/packets/collected_groups.h"

namespace {

namespace kit = carousel_kit;
using namespace dabspi::air;
using air_test::object_of;
using air_test::pattern;
using air_test::played_carousel;
using names = std::vector<std::string>;

class CarouselChanges : public ::testing::Test {
 protected:
    const kit::object old = object_of(11, "a", pattern(550, 1));
    const kit::object young = object_of(11, "a", pattern(550, 2));
    const kit::object longer = object_of(11, "a", pattern(650, 3));
    played_carousel played;
};

TEST_F(CarouselChanges, AnotherBodyUnderTheSameIdentifierIsAnotherVersion) {
    for (const bool headers : {false, true}) {
        played_carousel each;
        for (const kit::object* object : {&old, &old, &young, &young, &old})
            each.play(headers ? kit::header_round({*object}) : kit::directory_round(7, {*object}));
        ASSERT_EQ(each.sink.all.size(), 5U);
        EXPECT_EQ(each.sink.all[2].body, young.body);
        EXPECT_EQ(each.sink.all[4].body, old.body);
        const std::vector<bool> news = {true, false, true, false, true};
        for (std::size_t i = 0; i < news.size(); ++i)
            EXPECT_EQ(each.sink.all[i].is_new, news[i]) << i;
        EXPECT_EQ(each.dropped(carousel_drop::other_version), 2U);
    }
}

TEST_F(CarouselChanges, AnotherSizeUnderTheSameIdentifierVoidsTheHeldBody) {
    played.play(kit::directory_round(7, {old}));
    played.play(kit::directory_round(7, {longer}));
    played.play(kit::directory_round(8, {old}));
    ASSERT_EQ(played.sink.all.size(), 3U);
    EXPECT_EQ(played.sink.all[1].body, longer.body);
    EXPECT_EQ(played.sink.all[2].body, old.body);
}

TEST_F(CarouselChanges, ANewBodyMayComeBeforeItsDirectory) {
    played.play(kit::directory_round(7, {old}));
    played.play(kit::segment_groups(kit::kBodyGroup, 11, longer.body));
    EXPECT_EQ(played.sink.all.size(), 1U);
    EXPECT_EQ(played.dropped(carousel_drop::body_size), 1U);
    played.play(kit::segment_groups(kit::kDirectoryGroup, 8, kit::directory({longer})));
    ASSERT_EQ(played.sink.all.size(), 2U);
    EXPECT_EQ(played.sink.all[1].body, longer.body);
}

TEST_F(CarouselChanges, AnotherBodyVersionVoidsTheHeldBody) {
    kit::object versioned = old;
    versioned.more_parameters = kit::parameter(0x0D, {0, 0, 0, 1});
    const auto groups = kit::segment_groups(kit::kBodyGroup, 11, old.body);
    played.play(kit::segment_groups(kit::kDirectoryGroup, 7, kit::directory({versioned})));
    for (std::size_t i = 0; i + 1 < groups.size(); ++i)
        played.play(groups[i]);
    versioned.more_parameters = kit::parameter(0x0D, {0, 0, 0, 2});
    played.play(kit::segment_groups(kit::kDirectoryGroup, 8, kit::directory({versioned})));
    played.play(groups.back());
    played.carousel.finish();
    EXPECT_TRUE(played.sink.all.empty());
}

TEST_F(CarouselChanges, AnotherTransportIdentifierAloneIsNoNews) {
    kit::object renumbered = old;
    renumbered.transport_id = 99;
    played_carousel once(delivery::once);
    once.play(kit::directory_round(7, {old}));
    once.play(kit::directory_round(8, {renumbered}));
    EXPECT_EQ(once.sink.all.size(), 1U);
}

TEST_F(CarouselChanges, TwoObjectsOfOneNameAreEachNewOnce) {
    kit::object twin = young;
    twin.transport_id = 99;
    played_carousel once(delivery::once);
    for (int i = 0; i < 3; ++i)
        once.play(kit::directory_round(7, {old, twin}));
    EXPECT_EQ(once.sink.all.size(), 2U);
}

TEST_F(CarouselChanges, AnotherScopeIsNews) {
    kit::object scoped = old;
    scoped.more_parameters = kit::parameter(0x27, {1, 2, 3});
    played_carousel once(delivery::once);
    once.play(kit::directory_round(7, {old}));
    once.play(kit::directory_round(8, {scoped}));
    EXPECT_EQ(once.sink.all.size(), 2U);
}

TEST_F(CarouselChanges, WhatOneRoundLostTheNextOneFillsIn) {
    const auto round = kit::directory_round(7, {old});
    for (std::size_t i = 0; i < round.size(); ++i)
        if (i != 3) played.play(round[i]);
    EXPECT_TRUE(played.sink.all.empty());
    played.play(round);
    ASSERT_EQ(played.sink.all.size(), 1U);
    EXPECT_EQ(played.sink.all[0].body, old.body);
}

TEST_F(CarouselChanges, AtTheEndOfTheInputWhatIsWholeIsHandedOn) {
    const auto round = kit::directory_round(7, {old});
    for (std::size_t i = 0; i < round.size(); ++i)
        if (i != 3) played.play(round[i]);
    for (std::size_t i = 0; i < 4; ++i)
        played.play(round[i]);
    EXPECT_TRUE(played.sink.all.empty());
    played.carousel.finish();
    ASSERT_EQ(played.sink.all.size(), 1U);
    EXPECT_EQ(played.sink.all[0].body, old.body);
}

TEST_F(CarouselChanges, BodiesOfAnotherSizeThanTheHeadersAreDropped) {
    kit::object wrong = old;
    wrong.body_size = 551;
    played.play(kit::directory_round(7, {wrong}));
    played.play(kit::header_round({wrong}));
    EXPECT_TRUE(played.sink.all.empty());
    EXPECT_EQ(played.dropped(carousel_drop::body_size), 2U);
    EXPECT_EQ(played.object("a")->state, object_state::unusable);
}

TEST_F(CarouselChanges, GroupsThatCannotBeUsedAreCountedByCause) {
    kit::group_fields fields;
    fields.transport_id = 11;
    fields.last = true;
    kit::bytes group = kit::data_group(fields, {0, 1, 5});
    group.back() ^= 1;
    played.play(group);
    fields.transport_id = std::nullopt;
    played.play(kit::data_group(fields, {0, 1, 5}));
    fields.transport_id = 11;
    fields.segment_field = false;
    played.play(kit::data_group(fields, {0, 1, 5}));
    fields.segment_field = true;
    played.play(kit::data_group(fields, {0, 2, 5}));
    fields.type = 9;
    played.play(kit::data_group(fields, {0, 1, 5}));
    fields.type = 1;
    played.play(kit::data_group(fields, {0, 1, 5}));
    fields.type = 3;
    played.play(kit::data_group(fields, {0, 1, 5}));
    played.play(kit::bytes{});
    EXPECT_EQ(played.dropped(carousel_drop::group_crc), 1U);
    EXPECT_EQ(played.dropped(carousel_drop::group_without_segment), 2U);
    EXPECT_EQ(played.dropped(carousel_drop::segment_size), 1U);
    EXPECT_EQ(played.dropped(carousel_drop::group_of_other_type), 1U);
    EXPECT_EQ(played.dropped(carousel_drop::header_ill_formed), 1U);
    EXPECT_EQ(played.dropped(carousel_drop::group_ill_formed), 1U);
    EXPECT_EQ(played.carousel.counts().ca_messages, 1U);
    EXPECT_EQ(played.carousel.counts().groups, 8U);
}

TEST_F(CarouselChanges, EveryCauseHasWords) {
    for (unsigned cause = 0; cause < static_cast<unsigned>(carousel_drop::count); ++cause)
        EXPECT_STRNE(drop_text(static_cast<carousel_drop>(cause)), "") << cause;
}

// Versions change while groups are lost: whatever comes out is one of the versions, unmixed.
TEST_F(CarouselChanges, SeededLossWhileVersionsChangeGivesWholeVersionsOnly) {
    for (std::uint64_t seed = 0; seed < 100; ++seed) {
        soak::dice dice(seed);
        played_carousel each;
        std::size_t received = 0;
        for (unsigned version = 0; version < 4; ++version) {
            const kit::object one = object_of(11, "a", pattern(550, version));
            const kit::object two = object_of(12 + version, "b", pattern(300 + version, version));
            for (int round = 0; round < 5; ++round)
                for (const kit::bytes& group : kit::directory_round(7 + version / 2, {one, two}))
                    if (!dice.one_in(8)) each.play(group);
        }
        each.carousel.finish();
        for (const auto& object : each.sink.all) {
            bool sent = false;
            for (unsigned version = 0; version < 4; ++version)
                sent = sent || object.body == pattern(object.name == "a" ? 550 : 300 + version, version);
            ASSERT_TRUE(sent) << seed;
            ++received;
        }
        EXPECT_GT(received, 8U) << seed;
    }
}

}  // namespace

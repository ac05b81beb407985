#include "tools/air/mot/segmented_entity.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "testkit/ensemble/dice.h"
#include "tests/tools/air/packets/collected_groups.h"

namespace {

namespace kit = carousel_kit;
using air_test::part;
using air_test::pattern;
using dabspi::air::segmented_entity;

class SegmentedEntity : public ::testing::Test {
 protected:
    // Segment `number` of a body in segments of ten bytes.
    segmented_entity::taken take(const kit::bytes& body, unsigned number) {
        const std::size_t from = std::size_t{number} * 10;
        const std::size_t size = std::min<std::size_t>(10, body.size() - from);
        return entity.take(static_cast<std::uint16_t>(number), from + size == body.size(),
                           part(body, from, size));
    }
    // How often it was received in this round.
    int round(const kit::bytes& body, const std::vector<unsigned>& lost = {}) {
        int received = 0;
        for (unsigned i = 0; i * 10 < body.size(); ++i)
            if (std::find(lost.begin(), lost.end(), i) == lost.end())
                received += take(body, i).received ? 1 : 0;
        return received;
    }
    const kit::bytes a = pattern(95, 1);
    const kit::bytes b = pattern(95, 2);
    segmented_entity entity;
};

TEST_F(SegmentedEntity, EachWholeRoundIsOneReceptionWithItsLastSegment) {
    for (int i = 0; i < 3; ++i) {
        for (unsigned n = 0; n < 9; ++n)
            EXPECT_FALSE(take(a, n).received);
        EXPECT_TRUE(take(a, 9).received);
        EXPECT_EQ(*entity.body(), a);
    }
}

TEST_F(SegmentedEntity, AnyOrderWillDo) {
    soak::dice dice(1);
    for (int i = 0; i < 20; ++i) {
        entity = segmented_entity();
        std::vector<unsigned> order(10);
        std::iota(order.begin(), order.end(), 0U);
        for (std::size_t n = order.size(); n > 1; --n)
            std::swap(order[n - 1], order[static_cast<std::size_t>(dice.below(static_cast<int>(n)))]);
        for (int turn = 0; turn < 2; ++turn) {
            for (std::size_t n = 0; n < 10; ++n)
                EXPECT_EQ(take(a, order[n]).received, n == 9);
        }
        EXPECT_EQ(*entity.body(), a);
    }
}

TEST_F(SegmentedEntity, TheNextRoundFillsInWhatWasLostAndIsWaitedForToItsEnd) {
    EXPECT_EQ(round(a, {4, 5}), 0);
    EXPECT_EQ(entity.segments_held(), 8U);
    EXPECT_EQ(entity.segments(), 10U);
    for (unsigned n = 0; n < 9; ++n)
        EXPECT_FALSE(take(a, n).received) << n;
    EXPECT_TRUE(take(a, 9).received);
    EXPECT_EQ(round(a), 1);
}

TEST_F(SegmentedEntity, WhereTheLastSegmentIsLostTheBeginningOfTheNextRoundShowsTheEnd) {
    EXPECT_EQ(round(a, {4}), 0);
    EXPECT_EQ(round(a, {9}), 0);
    EXPECT_TRUE(take(a, 0).received);
}

TEST_F(SegmentedEntity, AtTheEndOfTheInputNothingIsWaitedFor) {
    round(a, {4});
    round(a, {9});
    EXPECT_TRUE(entity.finish());
    EXPECT_FALSE(entity.finish());
}

TEST_F(SegmentedEntity, SegmentsRepeatedAtOnceChangeNothing) {
    for (int turn = 0; turn < 3; ++turn) {
        int received = 0;
        for (unsigned n = 0; n < 10; ++n) {
            received += take(a, n).received;
            received += take(a, n).received;
        }
        EXPECT_EQ(received, 1);
    }
}

TEST_F(SegmentedEntity, AnEntityOfOneSegmentIsReceivedEachTime) {
    const kit::bytes small = pattern(4, 1);
    EXPECT_TRUE(take(small, 0).received);
    EXPECT_TRUE(take(small, 0).received);
    EXPECT_TRUE(entity.take(0, true, small).received);
    EXPECT_EQ(*entity.body(), small);
}

TEST_F(SegmentedEntity, ADifferentSegmentStartsItAgain) {
    round(a);
    const auto taken = take(b, 0);
    EXPECT_TRUE(taken.restarted);
    EXPECT_FALSE(taken.misfit);
    EXPECT_FALSE(entity.whole());
    EXPECT_EQ(entity.segments_held(), 1U);
    for (unsigned n = 1; n < 9; ++n)
        EXPECT_FALSE(take(b, n).restarted);
    EXPECT_TRUE(take(b, 9).received);
    EXPECT_EQ(*entity.body(), b);
}

TEST_F(SegmentedEntity, OtherSizesAndNumbersStartItAgain) {
    round(a);
    const kit::bytes longer = pattern(105, 1);
    EXPECT_TRUE(take(longer, 10).misfit);
    entity = segmented_entity();
    take(a, 3);
    EXPECT_TRUE(entity.take(4, false, pattern(11, 1)).misfit);
    EXPECT_TRUE(entity.take(5, true, pattern(12, 1)).misfit);
    EXPECT_TRUE(entity.take(4, true, pattern(5, 1)).misfit);  // the last was another
    EXPECT_FALSE(entity.take(3, false, pattern(5, 1)).misfit);
    EXPECT_TRUE(entity.take(2, false, pattern(4, 1)).misfit);  // shorter than the last
    EXPECT_FALSE(entity.take(7, true, pattern(4, 1)).misfit);
    EXPECT_TRUE(entity.take(7, false, pattern(4, 1)).misfit);  // it was the last
    EXPECT_TRUE(entity.take(7, true, pattern(4, 1)).misfit);   // it was not
}

// Two versions that have their beginning in common: the hole that one leaves must not be filled from the
// other.
TEST_F(SegmentedEntity, VersionsAreNotMixedWhereOneFillsTheOthersHole) {
    kit::bytes other = a;
    for (std::size_t i = 40; i < other.size(); ++i)
        other[i] ^= 0xFF;
    EXPECT_EQ(round(a, {4}), 0);
    EXPECT_EQ(round(other), 0);  // 0 to 3 are equal, 4 fills the hole, 5 shows it
    EXPECT_EQ(round(other), 1);
    EXPECT_EQ(*entity.body(), other);
}

TEST_F(SegmentedEntity, SeededLossNeverMixesVersionsThatDifferInEverySegment) {
    for (std::uint64_t seed = 0; seed < 300; ++seed) {
        soak::dice dice(seed);
        entity = segmented_entity();
        int received = 0;
        for (int turn = 0; turn < 12; ++turn) {
            const kit::bytes& sent = turn < 6 ? a : b;
            for (unsigned n = 0; n < 10; ++n) {
                if (dice.one_in(5)) continue;
                if (!take(sent, n).received) continue;
                ++received;
                ASSERT_TRUE(*entity.body() == a || *entity.body() == b) << seed;
                if (turn > 6) {
                    ASSERT_EQ(*entity.body(), b) << seed;
                }
            }
        }
        EXPECT_GT(received, 1) << seed;
    }
}

TEST_F(SegmentedEntity, AMissingNumberIsNotMadeUp) {
    EXPECT_FALSE(entity.take(32767, true, pattern(5, 1)).received);
    EXPECT_LT(entity.memory(), 1000U);
    EXPECT_EQ(entity.segments(), 32768U);
}

}  // namespace

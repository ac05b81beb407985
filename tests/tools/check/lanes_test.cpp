#include "tools/check/lanes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace {

using namespace dabspi::check;
using testing::ElementsAre;

// "lane/of" for each.
std::vector<std::string> places(const std::vector<time_span>& spans) {
    std::vector<std::string> all;
    for (const lane_place& each : lanes_of(spans))
        all.push_back(std::to_string(each.lane) + "/" + std::to_string(each.of));
    return all;
}

TEST(Lanes, AreOneWhereNothingOverlaps) {
    EXPECT_THAT(places({}), ElementsAre());
    EXPECT_THAT(places({{0, 60}, {60, 90}, {120, 180}}), ElementsAre("0/1", "0/1", "0/1"));
}

TEST(Lanes, AreTakenByThoseThatOverlapAndByNoOthers) {
    EXPECT_THAT(places({{0, 60}, {60, 120}, {90, 150}, {150, 200}}), ElementsAre("0/1", "0/2", "1/2", "0/1"));
}

TEST(Lanes, AreTakenAgainWhenTheyAreFree) {
    EXPECT_THAT(places({{0, 600}, {10, 20}, {20, 30}, {25, 40}, {40, 50}}),
                ElementsAre("0/3", "1/3", "1/3", "2/3", "1/3"));
}

TEST(Lanes, KeepASpanOfNoLengthApart) {
    EXPECT_THAT(places({{0, 60}, {30, 30}, {60, 60}}), ElementsAre("0/2", "1/2", "0/1"));
}

TEST(Lanes, AreNotMoreThanCanBeSeen) {
    std::vector<time_span> spans;
    for (long i = 0; i < 20; ++i)
        spans.push_back({i, 100});
    const auto all = lanes_of(spans);
    EXPECT_EQ(all.back().lane, kMostLanes - 1);
    EXPECT_EQ(all.front().of, kMostLanes);
}

TEST(Lanes, NeverHoldTwoSpansAtOnce) {
    std::mt19937 dice(1);
    for (int round = 0; round < 200; ++round) {
        std::vector<time_span> spans;
        long from = 0;
        for (int i = 0; i < 12; ++i) {
            from += static_cast<long>(dice() % 40);
            spans.push_back({from, from + 1 + static_cast<long>(dice() % 90)});
        }
        const auto all = lanes_of(spans);
        ASSERT_EQ(all.size(), spans.size());
        for (std::size_t i = 0; i < spans.size(); ++i) {
            ASSERT_LT(all[i].lane, all[i].of);
            for (std::size_t j = i + 1; j < spans.size(); ++j) {
                if (spans[j].from >= spans[i].to) continue;
                ASSERT_EQ(all[i].of, all[j].of) << "round " << round;
                if (all[i].of < kMostLanes) {
                    ASSERT_NE(all[i].lane, all[j].lane) << "round " << round;
                }
            }
        }
    }
}

}  // namespace

#include "tools/check/overlap_rows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace {

using namespace dabspi::check;
using testing::ElementsAre;

// "row/of" for each.
std::vector<std::string> rows(const std::vector<time_span>& spans) {
    std::vector<std::string> all;
    for (const row_position& each : rows_of(spans))
        all.push_back(std::to_string(each.row) + "/" + std::to_string(each.of));
    return all;
}

TEST(OverlapRows, AreOneWhereNothingOverlaps) {
    EXPECT_THAT(rows({}), ElementsAre());
    EXPECT_THAT(rows({{0, 60}, {60, 90}, {120, 180}}), ElementsAre("0/1", "0/1", "0/1"));
}

TEST(OverlapRows, AreTakenByThoseThatOverlapAndByNoOthers) {
    EXPECT_THAT(rows({{0, 60}, {60, 120}, {90, 150}, {150, 200}}), ElementsAre("0/1", "0/2", "1/2", "0/1"));
}

TEST(OverlapRows, AreTakenAgainWhenTheyAreFree) {
    EXPECT_THAT(rows({{0, 600}, {10, 20}, {20, 30}, {25, 40}, {40, 50}}),
                ElementsAre("0/3", "1/3", "1/3", "2/3", "1/3"));
}

TEST(OverlapRows, KeepASpanOfNoLengthApart) {
    EXPECT_THAT(rows({{0, 60}, {30, 30}, {60, 60}}), ElementsAre("0/2", "1/2", "0/1"));
}

TEST(OverlapRows, AreNotMoreThanCanBeSeen) {
    std::vector<time_span> spans;
    for (long i = 0; i < 20; ++i)
        spans.push_back({i, 100});
    const auto all = rows_of(spans);
    EXPECT_EQ(all.back().row, kMostRows - 1);
    EXPECT_EQ(all.front().of, kMostRows);
}

TEST(OverlapRows, NeverHoldTwoSpansAtOnce) {
    std::mt19937 dice(1);
    for (int round = 0; round < 200; ++round) {
        std::vector<time_span> spans;
        long from = 0;
        for (int i = 0; i < 12; ++i) {
            from += static_cast<long>(dice() % 40);
            spans.push_back({from, from + 1 + static_cast<long>(dice() % 90)});
        }
        const auto all = rows_of(spans);
        ASSERT_EQ(all.size(), spans.size());
        for (std::size_t i = 0; i < spans.size(); ++i) {
            ASSERT_LT(all[i].row, all[i].of);
            for (std::size_t j = i + 1; j < spans.size(); ++j) {
                if (spans[j].from >= spans[i].to) continue;
                ASSERT_EQ(all[i].of, all[j].of) << "round " << round;
                if (all[i].of < kMostRows) {
                    ASSERT_NE(all[i].row, all[j].row) << "round " << round;
                }
            }
        }
    }
}

}  // namespace

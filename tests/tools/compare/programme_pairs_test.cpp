// Which programme of one schedule is which of another.
#include "tools/compare/programme_pairs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <set>
#include <tuple>

#include "tests/tools/compare/small_guides.h"

namespace {

using namespace small_guides;
using dabspi::compare::local_days;
using dabspi::compare::pair_programmes;
using dabspi::compare::paired_programmes;
using dabspi::guide::programme;
using dabspi::guide::service;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

paired_programmes paired(const service& a, const service& b, std::int64_t tolerance = 0) {
    return pair_programmes(a, b, local_days(a, b), tolerance);
}

long minute_of(const programme& of) {
    return static_cast<long>((of.start - kMidnight) / 60);
}

std::vector<std::pair<long, long>> minutes_of(const paired_programmes& of) {
    std::vector<std::pair<long, long>> all;
    for (const auto& [a, b] : of.pairs)
        all.emplace_back(minute_of(*a), minute_of(*b));
    return all;
}

std::vector<std::string> names_of(const std::vector<const programme*>& of) {
    std::vector<std::string> all;
    for (const programme* const each : of)
        all.push_back(name_of(*each));
    return all;
}

TEST(ProgrammePairs, AreOfTheSameStartAndNameFirst) {
    const service a = station({talk("News", 60), talk("News", 120), talk("News", 180)});
    const service b = station({talk("News", 120), talk("News", 180), talk("News", 240)});
    const paired_programmes found = paired(a, b);
    EXPECT_THAT(minutes_of(found), ElementsAre(Pair(60, 240), Pair(120, 120), Pair(180, 180)));
}

TEST(ProgrammePairs, AreNearestFirst) {
    const service a = station({talk("News", 100), talk("News", 500)});
    const service b = station({talk("News", 90), talk("News", 130), talk("Late", 800)});
    const paired_programmes found = paired(a, b);
    EXPECT_THAT(minutes_of(found), ElementsAre(Pair(100, 90), Pair(500, 130)));
    EXPECT_THAT(names_of(found.only_b), ElementsAre("Late"));
}

TEST(ProgrammePairs, PreferTheIdentifierToTheName) {
    const service a = station({with_id(talk("Quiz", 60), "crid://example.org/1")});
    const service b = station({talk("Quiz", 70), with_id(talk("The Quiz", 300), "crid://example.org/1")});
    const paired_programmes found = paired(a, b);
    EXPECT_THAT(minutes_of(found), ElementsAre(Pair(60, 300)));
    EXPECT_THAT(names_of(found.only_b), ElementsAre("Quiz"));
}

TEST(ProgrammePairs, OfTheSameStartAreTheSameUnderAnotherName) {
    const service a = station({talk("Old", 60)});
    const service b = station({talk("New", 60)});
    EXPECT_THAT(minutes_of(paired(a, b)), ElementsAre(Pair(60, 60)));
}

TEST(ProgrammePairs, ThatChangePlacesWereMovedAndNotRenamed) {
    const service a = station({talk("First", 60), talk("Second", 120)});
    const service b = station({talk("Second", 60), talk("First", 120)});
    EXPECT_THAT(minutes_of(paired(a, b)), ElementsAre(Pair(60, 120), Pair(120, 60)));
}

TEST(ProgrammePairs, WithinTheToleranceAreTheSameBeforeThoseFurtherAwayWithItsIdentifier) {
    const service a = station({with_id(talk("Serial", 60), "crid://example.org/s")});
    const service b = station({talk("Serial", 61), with_id(talk("Serial", 300), "crid://example.org/s")});
    EXPECT_THAT(minutes_of(paired(a, b, 60)), ElementsAre(Pair(60, 61)));
    EXPECT_THAT(minutes_of(paired(a, b, 59)), ElementsAre(Pair(60, 300)));
}

TEST(ProgrammePairs, AreNotLookedForOnDaysThatOneSideHasAlone) {
    const service a = station({talk("News", 60), talk("News", 1440 + 60), talk("Jazz", 1440 + 120)});
    const service b = station({talk("News", 1440 + 60), talk("News", 2880 + 60), talk("Jazz", 2880 + 120)});
    const paired_programmes found = paired(a, b);
    EXPECT_THAT(minutes_of(found), ElementsAre(Pair(1500, 1500)));
    EXPECT_THAT(found.days_a, ElementsAre(Pair(kDay, 1U)));
    EXPECT_THAT(found.days_b, ElementsAre(Pair(kDay + 2, 2U)));
    EXPECT_THAT(names_of(found.only_a), ElementsAre("Jazz"));
    EXPECT_THAT(found.only_b, IsEmpty());
}

TEST(ProgrammePairs, WithinTheToleranceMayStandOnTwoDays) {
    const service a = station({talk("Night", 1439)});
    const service b = station({talk("Night", 1440)});
    const paired_programmes found = paired(a, b, 60);
    EXPECT_THAT(minutes_of(found), ElementsAre(Pair(1439, 1440)));
    EXPECT_THAT(found.days_a, IsEmpty());
    EXPECT_THAT(found.days_b, IsEmpty());
}

TEST(ProgrammePairs, WithoutNamesAreTheSameByTheirStartAlone) {
    const service a = station({talk("", 60), talk("", 120)});
    const service b = station({talk("", 60), talk("", 150)});
    const paired_programmes found = paired(a, b);
    EXPECT_THAT(minutes_of(found), ElementsAre(Pair(60, 60)));
    EXPECT_EQ(found.only_a.size(), 1U);
    EXPECT_EQ(found.only_b.size(), 1U);
}

TEST(LocalDays, AreThoseOfTheOffsetsThatAreCoded) {
    programme summer = talk("Summer", 1440 + 60);
    summer.offset = 4;
    programme winter = talk("Winter", 0);
    winter.offset = 2;
    const service coded = station({winter, summer});
    const service in_utc = station({talk("Any", 0)});
    for (const local_days& days : {local_days(coded, in_utc), local_days(in_utc, coded)}) {
        EXPECT_EQ(days.of(kMidnight - 3600), kDay);
        EXPECT_EQ(days.of(kMidnight - 3601), kDay - 1);
        EXPECT_EQ(days.of(kMidnight + 2 * 86400 - 7200), kDay + 2);
    }
    EXPECT_EQ(local_days(in_utc, in_utc).of(kMidnight - 1), kDay - 1);
}

// All of one name, so that nothing but time decides; as the words say it: again and again the two nearest.
std::vector<std::pair<long, long>> slowly_paired(const service& a, const service& b) {
    std::vector<std::pair<long, long>> made;
    std::set<long> left_a, left_b;
    for (const programme& each : a.programmes)
        left_a.insert(minute_of(each));
    for (const programme& each : b.programmes)
        left_b.insert(minute_of(each));
    while (!left_a.empty() && !left_b.empty()) {
        std::tuple<long, long, long, long> best = {1L << 40, 0, 0, 0};  // distance, the earlier, both
        for (const long x : left_a)
            for (const long y : left_b)
                best = std::min(best, std::make_tuple(std::abs(x - y), std::min(x, y), x, y));
        made.emplace_back(std::get<2>(best), std::get<3>(best));
        left_a.erase(std::get<2>(best));
        left_b.erase(std::get<3>(best));
    }
    std::sort(made.begin(), made.end());
    return made;
}

TEST(ProgrammePairs, AreThoseThatTryingAllPairsGives) {
    std::mt19937 random(20260310);
    for (int turn = 0; turn < 300; ++turn) {
        std::vector<programme> of_a, of_b;
        for (long minute = 0; minute < 60; ++minute) {
            if (random() % 3 == 0) of_a.push_back(talk("News", minute, 1));
            if (random() % 3 == 0) of_b.push_back(talk("News", minute, 1));
        }
        if (of_a.empty() || of_b.empty()) continue;
        const service a = station(of_a);
        const service b = station(of_b);
        ASSERT_EQ(minutes_of(paired(a, b)), slowly_paired(a, b)) << turn;
    }
}

TEST(ProgrammePairs, OfManyThatAllMovedAreAllFound) {
    std::vector<programme> of_a, of_b;
    for (long i = 0; i < 30'000; ++i) {
        of_a.push_back(talk("News", 3 * i, 1));
        of_b.push_back(talk("News", 3 * i + 1, 1));
    }
    const service a = station(of_a);
    const service b = station(of_b);
    const paired_programmes found = paired(a, b);
    EXPECT_EQ(found.pairs.size(), 30'000U);
    EXPECT_THAT(found.only_a, IsEmpty());
}

}  // namespace

// What is said of next, gaps and overlaps, against what the library told, minute by minute.

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>

#include "tests/tools/check/broadcast.h"
#include "tools/check/local_day.h"

namespace {

using namespace check_test;
using namespace dabspi::check;

// Today with gaps, overlaps and programmes within others; tomorrow without, from midnight on.
broadcast random_day(unsigned seed) {
    std::mt19937 dice(seed);
    const auto roll = [&dice](unsigned sides) { return static_cast<unsigned>(dice() % sides); };
    std::vector<spi_builder::programme_data> day;
    unsigned start = 10 * roll(6);
    while (start < 1440) {
        unsigned length = 20 + 10 * roll(30);
        if (start + length > 1440) length = 1440 - start;  // what runs past midnight has a test of its own
        day.push_back(programme("P" + std::to_string(start), kToday, start / 60, start % 60, length));
        const unsigned kind = roll(4);
        start += kind == 0 ? length + 10 : kind == 1 ? std::max(10U, length / 2 / 10 * 10) : length;
    }
    broadcast calls = tuned();
    calls.pi("today.ehb", schedule_object(day)).pi("tomorrow.ehb", schedule_object(whole_day(kToday + 1)));
    for (unsigned minute = 1; minute < 1440; minute += 5) {
        char time[8];
        std::snprintf(time, sizeof time, "%02u%02u", minute / 60, minute % 60);
        calls.clock("20260310", time);
    }
    return calls;
}

// The starts of programmes that have no next, as the findings have it.
std::set<long> said_without_next(const check_report& report) {
    std::set<long> starts;
    for (const schedule_boundary& boundary : boundaries_of(report.past, report.schedules.at(0))) {
        const programme_arrival& first = report.past.programmes[boundary.first];
        const programme_arrival& second = report.past.programmes[boundary.second];
        for (const finding& each : report.findings) {
            const bool gap =
                each.code == finding_code::gap && each.minute == first.end() && second.start > first.end();
            const bool overlap = each.code == finding_code::overlap && each.minute == second.start &&
                                 each.text.find("which has no next") != std::string::npos;
            if (gap || overlap) starts.insert(first.start);
        }
    }
    return starts;
}

TEST(NoNext, IsSaidOfJustThoseProgrammesThatTheLibraryReportedWithoutOne) {
    std::size_t without = 0;
    std::size_t with = 0;
    for (unsigned seed = 1; seed <= 25; ++seed) {
        const check_report report = random_day(seed).check();
        const std::set<long> said = said_without_next(report);
        for (const replayed_notification& each : report.replayed.all) {
            const auto* pair = std::get_if<dabspi::now_next>(&each.what);
            if (pair == nullptr || pair->now.name.empty()) continue;
            const long start = minute_of(pair->now.start);
            EXPECT_EQ(said.count(start) != 0, pair->next.name.empty())
                << "seed " << seed << ", " << pair->now.name;
            ++(pair->next.name.empty() ? without : with);
        }
    }
    EXPECT_GT(without, 50U);
    EXPECT_GT(with, 50U);
}

TEST(NothingOn, IsSaidFromTheTickOnAtWhichTheReportedProgrammeIsOver) {
    std::size_t all = 0;
    for (unsigned seed = 1; seed <= 25; ++seed) {
        const check_report report = random_day(seed).check();
        for (const finding& each : report.findings) {
            if (each.code != finding_code::nothing_on) continue;
            for (const std::size_t index : report.schedules.at(0).programmes) {
                const programme_arrival& programme = report.past.programmes[index];
                EXPECT_FALSE(programme.start < *each.minute && *each.minute < programme.end())
                    << "seed " << seed << ": " << each.text << ", but " << programme.name << " is on";
            }
            ++all;
        }
    }
    EXPECT_GT(all, 25U);
}

}  // namespace

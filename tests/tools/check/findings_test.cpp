// Every finding of the catalogue, shown by a small broadcast of its own.

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <set>

#include "tests/tools/check/shown.h"

namespace check_test {

void PrintTo(const shown& of, std::ostream* to) {
    *to << entry_of(of.code).name;
}

}  // namespace check_test

namespace {

using namespace check_test;
using namespace dabspi::check;

std::vector<shown> all_shown() {
    std::vector<shown> all;
    for (const auto& part :
         {shown_by_objects(), shown_by_programmes(), shown_by_schedules(), shown_by_logos()})
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

TEST(CleanBroadcast, ShowsNothing) {
    const check_report report = clean().check();
    EXPECT_EQ(codes(report), std::vector<std::string>{});
    EXPECT_EQ(report.disagreements, std::vector<std::string>{});
}

TEST(EveryFinding, IsShownBySomeBroadcast) {
    std::set<finding_code> codes_shown;
    for (const shown& each : all_shown())
        codes_shown.insert(each.code);
    for (const catalogue_entry& each : catalogue()) {
        if (each.code == finding_code::spi_not_sent) break;  // those of carousels have a test of their own
        EXPECT_EQ(codes_shown.count(each.code), 1U) << each.name;
    }
}

class Finding : public testing::TestWithParam<shown> {};

TEST_P(Finding, IsSaidWithItsPlace) {
    const check_report report = GetParam().make().check();
    const finding* const found = find(report, GetParam().code);
    ASSERT_NE(found, nullptr) << testing::PrintToString(codes(report));
    EXPECT_NE(found->text.find(GetParam().text), std::string::npos) << found->text;
    EXPECT_EQ(found->line, GetParam().line);
    EXPECT_EQ(found->object == kNone ? "" : report.past.objects[found->object].content_name,
              GetParam().object);
    EXPECT_EQ(found->byte.has_value(), GetParam().has_byte);
    if (found->byte) {
        EXPECT_LT(*found->byte, report.past.objects[found->object].body->size());
    }
    EXPECT_EQ(report.disagreements, std::vector<std::string>{});
}

std::string parameter_name(const testing::TestParamInfo<shown>& of) {
    std::string name = entry_of(of.param.code).name;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Catalogue, Finding, testing::ValuesIn(all_shown()), parameter_name);

}  // namespace

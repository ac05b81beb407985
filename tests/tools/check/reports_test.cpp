// The text and the JSON that are printed.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/tools/check/broadcast.h"
#include "tools/check/json_report.h"
#include "tools/check/text_report.h"

namespace {

using namespace check_test;
using namespace dabspi::check;
using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

check_report gapped() {
    auto day = whole_day(kToday);
    day[1].duration = 359 * 60;
    return with_today(schedule_object(day)).check();
}

TEST(TextReport, OfACleanBroadcastTellsTheDaysAndThatNothingWasFound) {
    EXPECT_EQ(text_report(clean().check(), {}),
              "test.jsonl: 8 calls, 2026-03-10 00:00 to 2026-03-10 00:01\n"
              "\n"
              "E1.C221.0 Station\n"
              "  2026-03-10  00:00 to 24:00, 4 programmes\n"
              "  2026-03-11  00:00 to 24:00, 4 programmes\n"
              "\n"
              "Logos                           128x128         320x240\n"
              "E1.C221.0 Station               written " +
                  std::to_string(png(128, 128).size()) + "     written " +
                  std::to_string(png(320, 240).size()) +
                  "\n"
                  "\n"
                  "nothing found\n");
}

TEST(TextReport, GroupsFindingsWithWhyAndRemedy) {
    const std::string text = text_report(gapped(), {});
    EXPECT_THAT(text, HasSubstr("warning  gap\n"
                                "  Next is the programme that starts in the very minute"));
    EXPECT_THAT(text, HasSubstr("  Remedy: Let each programme end"));
    EXPECT_THAT(
        text,
        HasSubstr("    line 6, today.ehb, byte 42\n"
                  "      E1.C221.0, 2026-03-10 11:59 to 12:00 (1 min): no next while \"Morning\" is on\n"));
    EXPECT_THAT(text, HasSubstr("\n1 warning\n"));
    EXPECT_THAT(text, HasSubstr("1 min of the day without"));
    EXPECT_THAT(text, Not(HasSubstr("\033")));
}

TEST(TextReport, IsColouredWhenAsked) {
    text_settings how;
    how.colours = dabspi::colouring(true);
    EXPECT_THAT(text_report(gapped(), how), HasSubstr("\033[33mwarning  gap\033[0m"));
}

TEST(TextReport, ShowsSomePlacesOfManyUnlessAllAreAskedFor) {
    broadcast calls = clean();
    for (int i = 0; i < 20; ++i)
        calls.image("other" + std::to_string(i), png(8, 8));
    const check_report report = calls.check();
    EXPECT_THAT(text_report(report, {}), HasSubstr("logo-not-announced  20 places"));
    EXPECT_THAT(text_report(report, {}), HasSubstr("and 12 more; --all shows them"));
    text_settings all;
    all.all = true;
    EXPECT_THAT(text_report(report, all), HasSubstr("line 28, other19"));
}

TEST(TextReport, TellsWhatWasLeftOut) {
    broadcast calls = clean();
    calls.pi("later.ehb", schedule_object(whole_day(kToday + 2)));
    EXPECT_THAT(text_report(calls.check(severity::error), {}),
                HasSubstr("nothing found, 1 of lower severity left out\n"));
}

TEST(TextReport, LetsNoTextDriveATerminal) {
    auto day = whole_day(kToday);
    day[0].name.medium_name = "\x1b[31mred\xE2\x80\xAE";
    day[0].duration = 60;
    EXPECT_THAT(text_report(with_today(schedule_object(day)).check(), {}), Not(HasSubstr("\x1b")));
}

TEST(TextReport, TellsOfAServiceWithoutProgrammes) {
    EXPECT_THAT(text_report(tuned().check(), {}), HasSubstr("\nE1.C221.0\n  no programmes\n"));
}

TEST(JsonReport, HoldsFindingsServicesAndLogos) {
    const json report = json::parse(json_report(gapped()));
    EXPECT_EQ(report["input"], "test.jsonl");
    EXPECT_EQ(report["errors"], 0);
    EXPECT_EQ(report["warnings"], 1);
    EXPECT_EQ(report["notes"], 0);
    const json& found = report["findings"].at(0);
    EXPECT_EQ(found["code"], "gap");
    EXPECT_EQ(found["severity"], "warning");
    EXPECT_EQ(found["line"], 6);
    EXPECT_EQ(found["object"], "today.ehb");
    EXPECT_EQ(found["byte"], 42);
    EXPECT_EQ(found["service"], "E1.C221.0");
    EXPECT_EQ(found["time"], "2026-03-10 11:59");
    EXPECT_EQ(found["why"], entry_of(finding_code::gap).why);
    EXPECT_EQ(found["remedy"], entry_of(finding_code::gap).remedy);
    const json& service = report["services"].at(0);
    EXPECT_EQ(service["name"], "Station");
    EXPECT_EQ(service["days"].at(0)["minutes_covered"], 1439);
    EXPECT_EQ(service["programmes"].size(), 8U);
    ASSERT_EQ(report["logos"].size(), 2U);
    EXPECT_EQ(report["logos"].at(0)["outcome"], "written");
    EXPECT_EQ(report["logos"].at(0)["file"], "E1C2210_3.PNG");
}

TEST(JsonReport, IsOneLineOfValidUtf8WhateverWasSent) {
    auto day = whole_day(kToday);
    day[0].name.medium_name = "\xFF\n\x1b";
    const std::string text = json_report(with_today(schedule_object(day)).check());
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1);
    EXPECT_EQ(json::parse(text)["services"][0]["programmes"][0]["name"], "\xEF\xBF\xBD\n\x1b");
}

TEST(Days, CountCoveredMinutesOnceAndOnTheirOwnDay) {
    auto day = whole_day(kToday);
    day.push_back(programme("Twice", kToday, 19, 0, 60));
    day.erase(day.begin());
    day[2].duration = 480 * 60;  // to 02:00 of the next day
    const check_report report = tuned().pi("today.ehb", schedule_object(day)).check();
    const auto days = days_of(report.past, report.schedules.at(0));
    ASSERT_EQ(days.size(), 1U);
    EXPECT_EQ(days[0].covered, 18 * 60);
    EXPECT_EQ(days[0].programmes, 4U);
    EXPECT_EQ(days[0].last - days[0].first, 20 * 60);
}

TEST(Numbers, HaveTheirThousandsSet) {
    EXPECT_EQ(number_of(0, "place"), "0 places");
    EXPECT_EQ(number_of(1, "place"), "1 place");
    EXPECT_EQ(number_of(1234567, "place"), "1,234,567 places");
}

}  // namespace

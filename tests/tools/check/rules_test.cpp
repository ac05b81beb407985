// What the rules do beyond one plain case: several things at once, repetitions, and what is no finding.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/check/broadcast.h"

namespace {

using namespace check_test;
using namespace dabspi::check;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

std::size_t count(const check_report& of, finding_code code) {
    std::size_t all = 0;
    for (const finding& each : of.findings)
        all += each.code == code ? 1 : 0;
    return all;
}

std::vector<std::string> texts(const check_report& of, finding_code code) {
    std::vector<std::string> all;
    for (const finding& each : of.findings)
        if (each.code == code) all.push_back(each.text);
    return all;
}

TEST(Findings, AreSortedBySeverityThenCodeThenLine) {
    auto day = whole_day(kToday);
    day[0].duration = 59;
    day[1].name.medium_name = "Caf\xE9";
    day[3].start = {0, 0, 0, {}, {}};
    const check_report report = with_today(schedule_object(day)).image("other.png", png(8, 8)).check();
    EXPECT_THAT(codes(report), ElementsAre("no-start", "misread", "not-utf8", "no-duration", "gap",
                                           "nothing-on", "logo-not-announced"));
}

TEST(Findings, OfLowerSeverityAreLeftOutAndCounted) {
    broadcast calls = clean();
    calls.pi("later.ehb", schedule_object(whole_day(kToday + 2))).image("other.png", png(8, 8));
    EXPECT_THAT(codes(calls.check(severity::note)), ElementsAre("logo-not-announced", "other-day"));
    EXPECT_THAT(codes(calls.check(severity::warning)), ElementsAre("logo-not-announced"));
    const check_report errors = calls.check(severity::error);
    EXPECT_THAT(codes(errors), ElementsAre());
    EXPECT_EQ(errors.left_out, 2U);
}

TEST(Findings, OfRepetitionsAreFoundOnce) {
    auto day = whole_day(kToday);
    day[1].duration = 300 * 60;
    const bytes object = schedule_object(day);
    broadcast calls = with_today(object);
    // Read anew on the other ensemble's return, and repeated in between.
    calls.pi("today.ehb", object).listen(0xC221, 0x1000).listen().pi("today.ehb", object);
    calls.pi("tomorrow.ehb", schedule_object(whole_day(kToday + 1)));
    EXPECT_EQ(count(calls.check(), finding_code::gap), 1U);
}

TEST(Findings, OfOneKindInOneObjectAreCounted) {
    const check_report report = clean().pi("later.ehb", schedule_object(whole_day(kToday + 2))).check();
    ASSERT_EQ(report.findings.size(), 1U);
    EXPECT_EQ(report.findings[0].more, 3U);
}

TEST(Gap, AcrossMidnightNamesBothDays) {
    auto day = whole_day(kToday);
    day.pop_back();
    const check_report report = with_today(schedule_object(day)).check();
    EXPECT_THAT(find(report, finding_code::gap)->text,
                HasSubstr("2026-03-10 18:00 to 2026-03-11 00:00 (6 h)"));
    EXPECT_EQ(count(report, finding_code::uncovered), 0U);
}

TEST(Gap, IsNoneWhereADurationWrapped) {
    std::vector<spi_builder::programme_data> day = {programme("Marathon", kToday, 0, 0, 0),
                                                    programme("Evening", kToday, 20, 0, 240)};
    day.front().duration = 72000 - 65536;
    EXPECT_THAT(codes(with_today(schedule_object(day)).check()), ElementsAre("duration-wrapped"));
}

TEST(Overlap, SaysWhenTheLaterProgrammeIsNeverSeen) {
    auto day = whole_day(kToday);
    day.push_back(programme("Special", kToday, 13, 0, 60));
    const check_report report = with_today(schedule_object(day)).check();
    EXPECT_THAT(find(report, finding_code::overlap)->text, HasSubstr("ends; it is never now"));
}

TEST(Overlap, IsSaidOfEachProgrammeWithinALongOneAndLeavesNoGapInIt) {
    std::vector<spi_builder::programme_data> day = {
        programme("All Day", kToday, 0, 0, 1080), programme("News", kToday, 8, 0, 5),
        programme("Sport", kToday, 17, 0, 30), programme("Evening", kToday, 18, 0, 360)};
    const check_report report = with_today(schedule_object(day)).check();
    EXPECT_THAT(codes(report), ElementsAre("overlap"));
    ASSERT_EQ(report.findings.size(), 2U);
    EXPECT_THAT(report.findings[0].text,
                HasSubstr("\"News\" starts 10 h before \"All Day\" ends; it is never"));
    EXPECT_THAT(report.findings[1].text,
                HasSubstr("\"Sport\" starts 1 h before \"All Day\" ends; it is never"));
}

TEST(Gap, BehindALongProgrammeIsSaidOfThatOne) {
    std::vector<spi_builder::programme_data> day = {programme("All Day", kToday, 0, 0, 1020),
                                                    programme("News", kToday, 8, 0, 5),
                                                    programme("Evening", kToday, 18, 0, 360)};
    const check_report report = with_today(schedule_object(day)).check();
    EXPECT_EQ(count(report, finding_code::gap), 1U);
    EXPECT_THAT(find(report, finding_code::gap)->text,
                HasSubstr("17:00 to 18:00 (1 h): no next while \"All Day\" is on"));
}

TEST(ContentName, IsLookedAtAsATextToo) {
    const bytes object = schedule_object(whole_day(kToday + 1));
    broadcast calls = clean();
    calls.pi("bell\x07.ehb", object).pi("caf\xE9.ehb", object);
    const check_report report = calls.check();
    EXPECT_THAT(codes(report), ElementsAre("not-utf8", "control-character"));
    EXPECT_EQ(find(report, finding_code::not_utf8)->line, 10U);
    EXPECT_EQ(find(report, finding_code::not_utf8)->text, "the content name is not UTF-8");
    EXPECT_EQ(find(report, finding_code::control_character)->text, "the content name holds \"\\u0007\"");
}

TEST(NoNext, IsWhatTheReplayShowsBeforeAGap) {
    auto day = whole_day(kToday);
    day[1].duration = 300 * 60;
    broadcast calls = with_today(schedule_object(day));
    calls.clock("20260310", "0601");
    const check_report report = calls.check();
    ASSERT_NE(find(report, finding_code::gap), nullptr);
    const auto* pair = std::get_if<dabspi::now_next>(&report.replayed.all.back().what);
    ASSERT_NE(pair, nullptr);
    EXPECT_EQ(pair->now.name, "Morning");
    EXPECT_EQ(pair->next.name, "");
}

TEST(NothingOn, IsNotSaidOfAServiceThatWasLeft) {
    broadcast calls = tuned();
    calls.clock("20260310", "0001").listen(0xC222).clock("20260310", "0002").clock("20260310", "0003");
    const check_report report = calls.check();
    ASSERT_EQ(count(report, finding_code::nothing_on), 2U);
    EXPECT_THAT(report.findings[0].text, HasSubstr("E1.C221.0, from 2026-03-10 00:01: showed nothing"));
    EXPECT_THAT(report.findings[1].text, HasSubstr("E1.C222.0, from 2026-03-10 00:02 to 2026-03-10 00:03"));
}

TEST(NothingOn, SaysWhatWasShownBeforeItsTime) {
    // Once now runs past midnight, the search goes on in tomorrow's schedule and takes what it finds there.
    broadcast calls = tuned();
    calls.clock("20260310", "2330");
    calls.pi("today.ehb", schedule_object({programme("Night Ferry", kToday, 23, 0, 120)}));
    calls.pi("tomorrow.ehb", schedule_object({programme("Small Hours", kToday + 1, 0, 30, 60),
                                              programme("Evening Tide", kToday + 1, 22, 0, 105)}));
    calls.clock("20260310", "2331");
    const check_report report = calls.check();
    ASSERT_NE(find(report, finding_code::overlap), nullptr);
    EXPECT_THAT(find(report, finding_code::overlap)->text, HasSubstr("\"Small Hours\" starts 30 min before"));
    EXPECT_THAT(texts(report, finding_code::nothing_on),
                ElementsAre(HasSubstr("from 2026-03-10 23:30 to 2026-03-10 23:31: showed nothing"),
                            HasSubstr("from 2026-03-10 23:31: showed \"Evening Tide\", which starts at "
                                      "2026-03-11 22:00")));
}

TEST(NoTomorrow, IsNotSaidWhenTomorrowComesLater) {
    broadcast calls = tuned();
    calls.pi("today.ehb", schedule_object(whole_day(kToday))).listen(0xC221, 0x1000).listen();
    calls.pi("today.ehb", schedule_object(whole_day(kToday)));
    EXPECT_THAT(codes(calls.check()), Contains("no-tomorrow"));
    calls.pi("tomorrow.ehb", schedule_object(whole_day(kToday + 1)));
    EXPECT_THAT(codes(calls.check()), Not(Contains("no-tomorrow")));
}

TEST(SameStart, IsNotSaidOfARepetition) {
    broadcast calls = clean();
    calls.pi("today-again.ehb", schedule_object(whole_day(kToday)));
    EXPECT_THAT(codes(calls.check()), ElementsAre());
}

TEST(OtherEnsemble, IsNotSaidWhereTheScopeNamesThisOne) {
    auto day = whole_day(kToday);
    for (auto& each : day)
        each.bearers = {{0xE1, 0x1000, 0xC221, 0}};
    EXPECT_THAT(codes(with_today(schedule_object(day)).check()), ElementsAre());
}

TEST(OtherEnsemble, CountsTheProgrammesOwnBearersOnly) {
    spi_builder::schedule_data data;
    data.programmes = whole_day(kToday);
    data.programmes[0].bearers = {{0xE1, 0x1000, 0xC221, 0}};
    data.programmes[1].bearers = {kStation};
    const check_report report = with_today(spi_builder::pi_object({data})).check();
    EXPECT_EQ(count(report, finding_code::other_ensemble), 1U);
    EXPECT_EQ(find(report, finding_code::no_scope_no_bearer)->more, 1U);
}

TEST(LogoNotSent, SaysWhenAnotherDataServiceHasIt) {
    broadcast calls = tuned();
    calls.si("si.eib", information_object(station_with({logo("logo.png", 320, 240)})));
    calls.feed(2, 3, "logo.png", png(320, 240), 0xE1C00099);
    const check_report report = calls.check();
    EXPECT_THAT(codes(report), ElementsAre("logo-not-sent", "logo-not-announced"));
    EXPECT_THAT(report.findings[0].text,
                HasSubstr("came on data service E1.E1C00099.0, not on E1.E1C00098.0"));
}

TEST(LogoEarly, IsNotSaidOfSizesThatAreNeverWritten) {
    broadcast calls = tuned();
    calls.image("small.png", png(32, 32));
    calls.si("si.eib", information_object(station_with({logo("small.png", 32, 32)})));
    EXPECT_THAT(codes(calls.check()), ElementsAre("logo-size"));
}

TEST(LogoNoStation, IsSaidOnceForAllLogosOfAService) {
    auto service = station_with({logo("1.png", 320, 240), logo("2.png", 128, 128)});
    service.bearers.clear();
    broadcast calls = tuned();
    calls.si("si.eib", information_object(service))
        .image("1.png", png(320, 240))
        .image("2.png", png(128, 128));
    const check_report report = calls.check();
    EXPECT_THAT(codes(report), ElementsAre("logo-no-station"));
    EXPECT_THAT(report.findings[0].text, HasSubstr("it has no bearer that counts"));
}

TEST(LogoSubtype, NamesGifAndBmp) {
    broadcast calls = tuned();
    calls.image("a", bytes{1}, 0).image("b", bytes{1}, 2).image("c", bytes{1}, 9);
    const check_report report = calls.check();
    ASSERT_EQ(report.findings.size(), 3U);
    EXPECT_EQ(report.findings[0].text, "ContentSubType 0, GIF");
    EXPECT_EQ(report.findings[1].text, "ContentSubType 2, BMP");
    EXPECT_EQ(report.findings[2].text, "ContentSubType 9");
}

}  // namespace

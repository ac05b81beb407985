// The page as text: it is well formed, its links lead somewhere, nothing of the broadcast becomes markup. How
// it looks is measured in a browser by scripts/check-page.

#include "tools/check/html_report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <set>

#include "tests/tools/check/broadcast.h"
#include "tools/check/html_text.h"

namespace {

using namespace check_test;
using namespace dabspi::check;
using testing::HasSubstr;
using testing::Not;

// Every match's first group.
std::vector<std::string> all(const std::string& text, const std::string& pattern) {
    const std::regex expression(pattern);
    std::vector<std::string> found;
    for (std::sregex_iterator each(text.begin(), text.end(), expression), end; each != end; ++each)
        found.push_back((*each)[1]);
    return found;
}

// Every link of the page leads to one of its elements.
void expect_links_lead_somewhere(const std::string& page) {
    std::set<std::string> ids;
    for (const std::string& id : all(page, " id=\"([^\"]*)"))
        EXPECT_TRUE(ids.insert(id).second) << id;
    for (const std::string& target : all(page, "href=\"#([^\"]*)"))
        EXPECT_EQ(ids.count(target), 1U) << target;
}

broadcast spoilt() {
    auto day = whole_day(kToday);
    day[0].duration = 300 * 60;
    day[1].duration = 400 * 60;
    day[2].name.medium_name = "Caf\xE9";
    broadcast calls = with_today(schedule_object(day));
    return calls.image("other.png", png(8, 8)).clock("20260310", "0600").clock("20260310", "0601");
}

TEST(Page, IsWholeWithoutScriptsAndWithoutAnythingFromOutside) {
    const std::string page = html_report(spoilt().check());
    EXPECT_EQ(page.substr(0, 15), "<!DOCTYPE html>");
    EXPECT_THAT(page,
                HasSubstr("<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none';"));
    EXPECT_THAT(page, Not(HasSubstr("<script")));
    EXPECT_THAT(page, Not(HasSubstr("<link")));
    EXPECT_THAT(page, Not(HasSubstr("url(")));
    EXPECT_THAT(page, HasSubstr("prefers-color-scheme: dark"));
    for (const std::string& source : all(page, "src=\"([^\"]*)"))
        EXPECT_EQ(source.substr(0, 22), "data:image/png;base64,");
}

TEST(Page, HasALinkToAndFromTheAnchorOfEachFinding) {
    const check_report report = spoilt().check();
    const std::string page = html_report(report);
    expect_links_lead_somewhere(page);
    std::set<std::string> targets;
    for (const std::string& target : all(page, "href=\"#(f[0-9]+)"))
        targets.insert(target);
    EXPECT_EQ(targets.size(), report.findings.size());
}

TEST(Page, ShowsEachProgrammeAtItsPlace) {
    const std::string page = html_report(clean().check());
    EXPECT_THAT(page,
                HasSubstr("data-start=\"360\" data-minutes=\"360\" style=\"left:25.0000%;width:25.0000%\""));
    EXPECT_EQ(all(page, "<li class=\"(cell)").size(), 8U);
    EXPECT_EQ(all(page, "(data-start=\"1\" style=\"left:0.0694%\")").size(), 1U);  // the clock
}

TEST(Page, ContinuesAProgrammeOnTheNextDay) {
    auto day = whole_day(kToday);
    day[3].duration = 480 * 60;
    const std::string page = html_report(with_today(schedule_object(day)).check());
    EXPECT_THAT(page, HasSubstr("class=\"cell continued\" data-start=\"0\" data-minutes=\"120\" "
                                "style=\"left:0.0000%;width:8.3333%;top:0.0000%;height:50.0000%\""));
    EXPECT_THAT(page, HasSubstr("data-start=\"1080\" data-minutes=\"360\""));
}

TEST(Page, MarksGapsAndTheTimeWithoutProgrammes) {
    auto day = whole_day(kToday);
    day[1].duration = 300 * 60;
    const std::string page = html_report(with_today(schedule_object(day)).check());
    EXPECT_THAT(page, HasSubstr("<li class=\"gap\" id=\"g1\" data-start=\"660\" data-minutes=\"60\""));
    EXPECT_THAT(page, HasSubstr("<li class=\"free\" data-start=\"660\" data-minutes=\"60\""));
}

TEST(Page, MarksAGapBehindAProgrammeThatHoldsOthers) {
    const std::vector<spi_builder::programme_data> day = {programme("All Day", kToday, 0, 0, 1020),
                                                          programme("News", kToday, 16, 55, 5),
                                                          programme("Evening", kToday, 18, 0, 360)};
    const std::string page = html_report(with_today(schedule_object(day)).check());
    EXPECT_THAT(page, HasSubstr("<li class=\"gap\" id=\"g0\" data-start=\"1020\" data-minutes=\"60\""));
    EXPECT_EQ(all(page, "(<li class=\"gap\")").size(), 1U);
    expect_links_lead_somewhere(page);
}

TEST(Page, HasARowForADayThatIsAGapAltogether) {
    broadcast calls = tuned();
    calls.pi("today.ehb", schedule_object(whole_day(kToday)));
    calls.clock("20260312", "0000").pi("later.ehb", schedule_object(whole_day(kToday + 2)));
    const std::string page = html_report(calls.check());
    EXPECT_THAT(page, HasSubstr("<h4>Wed <span>2026-03-11</span></h4>"));
    EXPECT_THAT(page, HasSubstr("<li class=\"gap\" id=\"g3\" data-start=\"0\" data-minutes=\"1440\""));
    expect_links_lead_somewhere(page);
}

TEST(Page, ShowsProgrammesThatOverlapInRowsOfTheirOwn) {
    auto day = whole_day(kToday);
    day.push_back(programme("Within", kToday, 7, 0, 60));
    day.push_back(programme("Across", kToday, 7, 30, 60));
    const std::string page = html_report(with_today(schedule_object(day)).check());
    EXPECT_EQ(all(page, "(top:0\\.0000%;height:33\\.3333%)").size(), 1U);
    EXPECT_EQ(all(page, "(top:33\\.3333%;height:33\\.3333%)").size(), 1U);
    EXPECT_EQ(all(page, "(top:66\\.6667%;height:33\\.3333%)").size(), 1U);
    EXPECT_THAT(all(page, "style=\"--rows:([0-9]+)"), testing::ElementsAre("3", "1"));
}

TEST(Page, MarksWhatIsOnAndWhatWasReported) {
    const std::string page = html_report(spoilt().check());
    EXPECT_EQ(all(page, "(aria-current=\"time\")").size(), 1U);
    EXPECT_THAT(page, HasSubstr(" now reported"));
    EXPECT_THAT(page, HasSubstr("<b>now</b> <time>06:00</time> <bdi>Morning</bdi>"));
}

TEST(Page, EmbedsLogosAndNothingThatIsNoImage) {
    broadcast calls = tuned();
    calls.si("si.eib", information_object(station_with({logo("logo.png", 320, 240)})));
    calls.image("logo.png", spi_builder::str("<svg onload='alert(1)'></svg>"));
    const std::string page = html_report(calls.check());
    EXPECT_THAT(page, Not(HasSubstr("<img")));
    EXPECT_THAT(page, HasSubstr("no image that can be shown"));
    EXPECT_EQ(all(html_report(clean().check()), "<(img) alt=\"[^\"]+\"").size(), 2U);
}

TEST(Page, TurnsNoTextOfTheBroadcastIntoMarkup) {
    const std::string evil =
        "</bdi></style></title><script>alert('x')</script>\"'><img src=x onerror=alert(1)>";
    auto day = whole_day(kToday);
    day[0].name.medium_name = evil;
    day[0].duration = 59;
    auto service = station_with({logo(evil, 320, 240)});
    service.name.medium_name = evil;
    broadcast calls = tuned();
    calls.si(evil, information_object(service))
        .pi(evil + "2", schedule_object(day))
        .image(evil, png(320, 240));
    calls.clock("20260310", "0001").clock("20260310", "0700");
    const check_report report = calls.check();
    const std::string page = html_report(report);
    EXPECT_THAT(page, Not(HasSubstr("<script")));
    EXPECT_THAT(page, Not(HasSubstr("<img src=x")));
    EXPECT_THAT(page, Not(HasSubstr("alert('")));
    EXPECT_THAT(page, HasSubstr("&lt;script&gt;alert(&#39;x&#39;)"));
    // Title, one style, one body.
    for (const char* const tag : {"</title>", "</style>", "</body>", "</html>"})
        EXPECT_EQ(page.find(tag), page.rfind(tag)) << tag;
}

TEST(Page, OfAFolderSpeaksOfNoLines) {
    check_report report = clean().check();
    report.input.folder = true;
    EXPECT_THAT(html_report(report), Not(HasSubstr("line 6")));
}

TEST(Escaped, LeavesNothingThatMarksUp) {
    EXPECT_EQ(html::escaped("<a href=\"x\">&'"), "&lt;a href=&quot;x&quot;&gt;&amp;&#39;");
    EXPECT_EQ(html::escaped("\xFF\x01\xE2\x80\xAE"), "\xEF\xBF\xBD\\u0001\\u202e");
    EXPECT_EQ(html::from_broadcast("a"), "<bdi>a</bdi>");
}

// As large as it says, and nothing in it.
bytes jpeg(unsigned width, unsigned height) {
    const auto high = [](unsigned v) { return static_cast<std::uint8_t>(v >> 8); };
    const auto low = [](unsigned v) { return static_cast<std::uint8_t>(v); };
    return {0xFF,        0xD8,       0xFF, 0xC0, 0x00, 0x0B, 0x08, high(height), low(height),
            high(width), low(width), 0x01, 0x01, 0x11, 0x00, 0xFF, 0xD9};
}

TEST(Page, EmbedsNoImageOfMoreThanSixteenMillionPixels) {
    const auto page_with = [](const bytes& image) {
        broadcast calls = tuned();
        auto data = logo("logo.jpg", 320, 240);
        data.mime = "image/jpeg";
        calls.si("si.eib", information_object(station_with({data}))).image("logo.jpg", image, 1);
        return html_report(calls.check());
    };
    EXPECT_THAT(page_with(jpeg(320, 240)), HasSubstr("data:image/jpeg;base64,"));
    EXPECT_THAT(page_with(jpeg(16000, 16000)), testing::Not(HasSubstr("data:image")));
    EXPECT_THAT(page_with({0xFF, 0xD8, 0xFF, 0xD9}), testing::Not(HasSubstr("data:image")))
        << "of unknown size";
}

TEST(Page, CutsMarksThatPileUp) {
    std::string marks = "e";
    for (int i = 0; i < 500; ++i)
        marks += "\u0301";
    auto day = whole_day(kToday);
    day[0].name.medium_name = marks;
    const std::string page = html_report(with_today(schedule_object(day)).check());
    EXPECT_THAT(page, HasSubstr("e\u0301\u0301\u0301\u0301\u0301\u0301\u2026"));
    EXPECT_THAT(page, testing::Not(HasSubstr("\u0301\u0301\u0301\u0301\u0301\u0301\u0301")));
}

}  // namespace

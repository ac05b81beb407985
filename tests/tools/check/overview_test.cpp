// The tables of what a carousel holds, and how text, page and JSON show them.

#include "tools/check/overview.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "tests/tools/check/broadcast.h"
#include "tools/check/html_report.h"
#include "tools/check/json_report.h"
#include "tools/check/text_report.h"

namespace {

using namespace check_test;
using namespace dabspi::check;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

spi_builder::service_data another(std::uint32_t sid, const std::string& name) {
    spi_builder::service_data service;
    service.name.medium_name = name;
    service.bearers = {{0xE1, kEnsemble, sid, 0}};
    return service;
}

spi_builder::programme_data described(const std::string& name, unsigned hour) {
    return programme(name, kToday, hour, 0, 60);
}

// Three services are announced, of which one has a schedule and one a logo; a fourth has a schedule alone.
broadcast three() {
    broadcast calls = tuned();
    spi_builder::schedule_data stranger;
    stranger.scope = spi_builder::service_id{0xE1, kEnsemble, 0xC2FF, 0};
    stranger.programmes = {described("One", 6), described("Two", 8)};
    calls.si(
        "si.eib",
        spi_builder::si_object(
            0xE1, kEnsemble,
            {station_with({logo("128.png", 128, 128), logo("320.png", 320, 240), logo("32.png", 32, 32)}),
             another(0xC222, "Second"), another(0xC223, "Third")}));
    calls.image("128.png", png(128, 128)).image("32.png", png(32, 32));
    calls.pi("today.ehb", schedule_object(whole_day(kToday)))
        .pi("late.ehb", schedule_object(whole_day(kToday + 5)));
    return calls.pi("stranger.ehb", spi_builder::pi_object({stranger}));
}

TEST(Overview, CountsLogosByServiceAndSize) {
    const overview all = overview_of(three().check());
    ASSERT_EQ(all.services.size(), 4U);
    const service_overview& first = all.services[0];
    EXPECT_EQ(first.name, "Station");
    EXPECT_EQ(cell_text(first.logos[3]), "written, " + number_of(png(128, 128).size(), "byte"));
    EXPECT_EQ(cell_text(first.logos[4]), "not sent");
    EXPECT_EQ(cell_text(first.logos[1]), "sent, " + number_of(png(32, 32).size(), "byte"));
    EXPECT_EQ(cell_text(first.logos[5]), "");
}

TEST(Overview, CountsDaysWithTheirGapsWhetherTheyAreKeptOrNot) {
    const overview all = overview_of(three().check());
    ASSERT_EQ(all.services[0].days.size(), 2U);
    EXPECT_TRUE(all.services[0].days[0].kept);
    EXPECT_EQ(all.services[0].days[0].sum.programmes, 4U);
    EXPECT_FALSE(all.services[0].days[1].kept);
    const sent_day& stranger = all.services[3].days.at(0);
    EXPECT_EQ(stranger.gaps, 1U);
    EXPECT_EQ(stranger.sum.last - stranger.sum.first, 180);
}

TEST(Overview, NamesWhatIsMissing) {
    const overview all = overview_of(three().check());
    EXPECT_THAT(all.without_schedule(), ElementsAre(1U, 2U));
    EXPECT_THAT(all.without_logo(), ElementsAre(1U, 2U));
    EXPECT_THAT(all.not_announced(), ElementsAre(3U));
    // Where nobody has one, it is not missing.
    broadcast calls = tuned();
    calls.si("si.eib", information_object(station_with({})));
    EXPECT_THAT(overview_of(calls.check()).without_schedule(), ElementsAre());
}

TEST(Overview, CountsDescriptionsAndGenresAndReadsVersions) {
    namespace b = spi_builder;
    const bytes genre = b::elem(0x14, {b::attr(0x80, {0x13, 0x06})});
    const bytes text = b::elem(0x13, {b::elem(0x1A, {b::text("About it")})});
    auto day = whole_day(kToday);
    b::bytes content = b::programme(day[0]);
    // A programme of less than 254 bytes: its length is the second byte.
    content.insert(content.end(), genre.begin(), genre.end());
    content.insert(content.end(), text.begin(), text.end());
    content[1] = static_cast<std::uint8_t>(content.size() - 2);
    const bytes scope = b::elem(0x24, {b::elem(0x25, {b::attr(0x80, b::content_id(kStation))})});
    const bytes object =
        b::elem(0x02, {b::elem(0x21, {b::attr(0x80, {0x00, 0x2A}),
                                      b::attr(0x81, b::time_point({kToday, 6, 0})), scope, content})});
    const overview all = overview_of(tuned().pi("pi.ehb", object).check());
    ASSERT_EQ(all.services.size(), 1U);
    EXPECT_EQ(all.services[0].days.at(0).described, 1U);
    EXPECT_EQ(all.services[0].days.at(0).with_genre, 1U);
    ASSERT_EQ(all.objects.size(), 1U);
    EXPECT_EQ(all.objects[0].version, "42");
    EXPECT_THAT(all.objects[0].created, HasSubstr("2026-03-10T06:00"));
}

TEST(Overview, StandsInTextPageAndJson) {
    const check_report report = three().check();
    const std::string text = text_report(report, {});
    EXPECT_THAT(text, HasSubstr("Logos                           32x32           128x128         320x240\n"
                                "E1.C221.0 Station               sent "));
    EXPECT_THAT(text, HasSubstr("not sent\n"));
    EXPECT_THAT(text, HasSubstr("2026-03-15  00:00 to 24:00, 4 programmes; not kept\n"));
    EXPECT_THAT(text, HasSubstr("Without a schedule (2): E1.C222.0 Second, E1.C223.0 Third\n"));
    EXPECT_THAT(text, HasSubstr("With a schedule and not announced (1): E1.C2FF.0\n"));
    const std::string page = html_report(report);
    EXPECT_THAT(page, HasSubstr("<section id=\"overview\">"));
    EXPECT_THAT(page, HasSubstr("<td class=\"missing\">not sent"));
    EXPECT_THAT(page, HasSubstr("Services without a logo: 2"));
    const auto json = nlohmann::json::parse(json_report(report))["overview"];
    EXPECT_EQ(json["services"][0]["logos"][1]["size"], "128x128");
    EXPECT_EQ(json["services"][0]["logos"][1]["written"], true);
    EXPECT_EQ(json["services"][3]["days"][0]["gaps"], 1);
    EXPECT_EQ(json["without_logo"], nlohmann::json({"E1.C222.0", "E1.C223.0"}));
    EXPECT_EQ(json["not_announced"], nlohmann::json::array({"E1.C2FF.0"}));
    EXPECT_EQ(json["objects"].size(), 4U);
}

TEST(StalePage, SaysSoBeforeAnythingElse) {
    broadcast calls;
    calls.clock("20360310", "1200").listen().pi("pi.ehb", schedule_object(whole_day(kToday)));
    const std::string page = html_report(calls.check());
    EXPECT_THAT(page, HasSubstr("<title>E1.C185, 2036-03-10: dabspi check</title>"));
    const std::size_t banner = page.find("class=\"banner\"");
    ASSERT_NE(banner, std::string::npos);
    EXPECT_LT(banner, page.find("<main>"));
    EXPECT_THAT(page.substr(banner), HasSubstr("10 years before"));
    EXPECT_THAT(html_report(clean().check()), Not(HasSubstr("class=\"banner\"")));
}

TEST(PageOfManyAnnouncements, CountsTheFindingsOfAnObject) {
    std::vector<spi_builder::logo_data> logos;
    for (unsigned i = 0; i < 144; ++i)
        logos.push_back(logo("http://logos.example/" + std::to_string(i) + ".png", 128, 128));
    broadcast calls = tuned();
    calls.si("si.eib", information_object(station_with(logos)));
    const std::string page = html_report(calls.check());
    EXPECT_THAT(page, HasSubstr("logo-not-sent \u00D7\u00A0"
                                "144</a>"));
    EXPECT_THAT(page, HasSubstr("<summary>13 to 112</summary>"));
    EXPECT_THAT(page, HasSubstr("<summary>113 to 144</summary>"));
}

// A service with gaps on many days: `days` of four programmes, of which a receiver keeps two days.
std::size_t page_size(unsigned services, unsigned days) {
    broadcast calls = tuned();
    std::vector<spi_builder::service_data> announced;
    for (unsigned i = 0; i < services; ++i) {
        announced.push_back(another(0xC300 + i, "Service " + std::to_string(i)));
        for (unsigned day = 0; day < days; ++day) {
            spi_builder::schedule_data schedule;
            schedule.scope = spi_builder::service_id{0xE1, kEnsemble, 0xC300 + i, 0};
            schedule.programmes = whole_day(kToday + day);
            for (auto& each : schedule.programmes)
                each.duration = 300 * 60;
            calls.pi(std::to_string(i) + "-" + std::to_string(day), spi_builder::pi_object({schedule}));
        }
    }
    calls.si("si.eib", spi_builder::si_object(0xE1, kEnsemble, announced));
    return html_report(calls.check()).size();
}

TEST(Page, GrowsWithWhatItShowsAndNotFaster) {
    const std::size_t style = page_size(1, 1);
    const std::size_t ten = page_size(10, 2) - style;
    const std::size_t twenty = page_size(20, 2) - style;
    EXPECT_LT(twenty, ten * 22 / 10);
    const std::size_t week = page_size(2, 7) - style;
    const std::size_t month = page_size(2, 28) - style;
    EXPECT_LT(month, week * 44 / 10);
}

TEST(TextReport, IsCutByKind) {
    std::vector<spi_builder::logo_data> logos;
    for (unsigned i = 0; i < 1000; ++i)
        logos.push_back(logo(std::to_string(i) + ".png", 32, 32));
    broadcast calls = tuned();
    calls.si("si.eib", information_object(station_with(logos)));
    const std::string text = text_report(calls.check(), {});
    EXPECT_LT(std::count(text.begin(), text.end(), '\n'), 80);
    EXPECT_THAT(text, HasSubstr("logo-not-sent  1000 places"));
    EXPECT_THAT(text, HasSubstr("    and 992 more; --all shows them\n"));
}

}  // namespace

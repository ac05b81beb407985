// The page of a programme guide as text. How it looks and what its script does is measured in a browser by
// scripts/check-page.
#include "tools/guide_page/guide_page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <set>

#include "tools/text/base64.h"
#include "tools/text/sha256.h"

namespace {

using dabspi::guide_page;
using dabspi::guide::programme;
using dabspi::guide::programme_guide;
using dabspi::guide::service;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr std::int64_t kMidnight = 1773100800;  // 2026-03-10T00:00Z

programme talk(const std::string& name, int hour) {
    programme made;
    made.names.medium_texts = {{name, ""}};
    made.start = kMidnight + hour * 3600;
    made.duration = 3600;
    made.offset = 2;
    return made;
}

service station(const std::string& name, std::uint32_t sid, std::vector<programme> programmes) {
    service made;
    made.id = {0xE1, sid, 0};
    made.names.medium_texts = {{name, ""}};
    made.ensembles = {{0xE1, 0xC185}};
    made.programmes = std::move(programmes);
    return made;
}

programme_guide guide_of(std::vector<service> services) {
    programme_guide made;
    made.services = std::move(services);
    made.ensembles[{0xE1, 0xC185}].medium_texts = {{"Town Multiplex", ""}};
    return made;
}

// Every match's first group.
std::vector<std::string> all(const std::string& text, const std::string& pattern) {
    const std::regex expression(pattern);
    std::vector<std::string> found;
    for (std::sregex_iterator each(text.begin(), text.end(), expression), end; each != end; ++each)
        found.push_back((*each)[1]);
    return found;
}

TEST(GuidePage, ShowsServicesByNameWithTheirDaysAndProgrammes) {
    programme first = talk("Morning", 6);
    first.descriptions.long_texts = {{"All about it.\nAnd more.", ""}};
    first.genres = {{3, {6, 2}}};
    const std::string page =
        guide_page(guide_of({station("Zebra", 0xC221, {first, talk("Late", 22), talk("Tomorrow", 23)}),
                             station("apple", 0xC222, {})}));
    EXPECT_LT(page.find("<h2><bdi>apple"), page.find("<h2><bdi>Zebra"));
    EXPECT_THAT(page, HasSubstr("<summary><span>07:00\u201308:00</span> <bdi>Morning</bdi></summary>"
                                "<p dir=\"auto\">All about it.<br>And more.</p>"
                                "<p><small>Music: Jazz</small></p></details>"));
    EXPECT_THAT(all(page, "<summary>([A-Z][a-z]+day, [0-9-]+) "),
                ElementsAre("Tuesday, 2026-03-10", "Wednesday, 2026-03-11"));
    EXPECT_THAT(page, HasSubstr("<summary><bdi>Town Multiplex</bdi> e1.c185 <small>2 services</small>"));
    EXPECT_THAT(page, HasSubstr("No programmes are known."));
}

TEST(GuidePage, OpensTheDayOfAServiceThatHasOneOnly) {
    const std::string one = guide_page(guide_of({station("One", 0xC221, {talk("A", 6)})}));
    EXPECT_EQ(all(one, "(<details class=\"day\" open)").size(), 1U);
    const std::string two = guide_page(guide_of({station("One", 0xC221, {talk("A", 6), talk("B", 30)})}));
    EXPECT_EQ(all(two, "(<details class=\"day\" open)").size(), 0U);
    EXPECT_EQ(all(two, "(<details class=\"day\")").size(), 2U);
}

TEST(GuidePage, SaysWhenADayIsInUtc) {
    programme in_utc = talk("A", 6);
    in_utc.offset.reset();
    EXPECT_THAT(guide_page(guide_of({station("One", 0xC221, {in_utc})})),
                HasSubstr("<small>1 programme, times in UTC</small>"));
    EXPECT_THAT(guide_page(guide_of({station("One", 0xC221, {talk("A", 6)})})), Not(HasSubstr("UTC")));
}

TEST(GuidePage, LetsAProgrammeWithoutADurationLastToTheNext) {
    programme open = talk("Open", 6);
    open.duration = 0;
    const std::string page = guide_page(guide_of({station("One", 0xC221, {open, talk("B", 8)})}));
    EXPECT_THAT(page, HasSubstr("<li data-s=\"" + std::to_string(kMidnight + 6 * 3600) + "\" data-e=\"" +
                                std::to_string(kMidnight + 8 * 3600) + "\">"));
}

TEST(GuidePage, RunsItsOwnScriptAndFetchesNothing) {
    const std::string page = guide_page(guide_of({station("One", 0xC221, {talk("A", 6)})}));
    const std::size_t from = page.find("<script>") + 8;
    const std::string script = page.substr(from, page.find("</script>") - from);
    const auto hash = dabspi::sha256(script);
    EXPECT_THAT(page,
                HasSubstr("content=\"default-src 'none'; img-src data:; style-src 'unsafe-inline'; base-uri "
                          "'none'; form-action 'none'; script-src 'sha256-" +
                          dabspi::encode_base64({hash.begin(), hash.end()}) + "'\""));
    EXPECT_EQ(all(page, "(<script)").size(), 1U);
    EXPECT_THAT(page, AllOf(Not(HasSubstr("<link")), Not(HasSubstr("url(")), Not(HasSubstr("://"))));
}

TEST(GuidePage, LeadsItsLinksSomewhere) {
    const std::string page =
        guide_page(guide_of({station("One", 0xC221, {talk("A", 6)}), station("Two", 0xC222, {})}));
    std::set<std::string> ids;
    for (const std::string& id : all(page, " id=\"([^\"]*)"))
        EXPECT_TRUE(ids.insert(id).second) << id;
    const std::vector<std::string> targets = all(page, "href=\"#([^\"]*)");
    EXPECT_EQ(targets.size(), 3U);
    for (const std::string& target : targets)
        EXPECT_EQ(ids.count(target), 1U) << target;
}

TEST(GuidePage, KeepsTextsOfTheBroadcastFromBecomingMarkup) {
    const std::string hostile = "</noscript></bdi><script>alert(1)</script>\" onload='x\x1b[31m\xE2\x80\xAE";
    programme one = talk(hostile, 6);
    one.descriptions.short_texts = {{hostile, ""}};
    service of = station(hostile, 0xC221, {one});
    of.descriptions.short_texts = {{hostile, ""}};
    programme_guide guide = guide_of({of});
    guide.ensembles.begin()->second.medium_texts = {{hostile, ""}};
    const std::string page = guide_page(guide);
    EXPECT_EQ(all(page, "(<script)").size(), 1U);
    EXPECT_THAT(page, AllOf(HasSubstr("&lt;script&gt;alert(1)"), Not(HasSubstr("\" onload")),
                            Not(HasSubstr("\x1b")), Not(HasSubstr("\xE2\x80\xAE"))));
}

TEST(GuidePage, ShowsOnlyWhatIsAnImage) {
    service of = station("One", 0xC221, {});
    dabspi::guide::picture logo;
    logo.url = "a.png";
    const std::string text = "<svg onload='alert(1)'></svg>";
    logo.content = std::make_shared<const dabspi::bytes>(text.begin(), text.end());
    of.pictures = {logo};
    EXPECT_THAT(guide_page(guide_of({of})), Not(HasSubstr("<img")));
}

}  // namespace

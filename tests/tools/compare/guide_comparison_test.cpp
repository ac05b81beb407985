// What differs between two programme guides.
#include "tools/compare/guide_comparison.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/compare/small_guides.h"
#include "tools/compare/time_words.h"

namespace {

using namespace small_guides;
using dabspi::compare::compare_guides;
using dabspi::compare::compare_settings;
using dabspi::compare::comparison;
using dabspi::compare::difference;
using dabspi::compare::difference_kind;
using dabspi::compare::words_of;
using dabspi::guide::programme;
using dabspi::guide::programme_guide;
using dabspi::guide::service;
using testing::ElementsAre;
using testing::IsEmpty;

// "KIND: TEXT" of each.
std::vector<std::string> said(const programme_guide& a, const programme_guide& b,
                              const compare_settings& settings = {}) {
    std::vector<std::string> all;
    const comparison made = compare_guides(a, b, settings);
    for (const difference& each : made.differences)
        all.push_back(std::string(words_of(each.kind).name) + ": " + each.text);
    return all;
}

std::vector<std::string> said(const service& a, const service& b, const compare_settings& settings = {}) {
    return said(guide_of({a}), guide_of({b}), settings);
}

std::shared_ptr<const dabspi::bytes> image(std::uint8_t byte) {
    return std::make_shared<const dabspi::bytes>(dabspi::bytes{byte, byte});
}

dabspi::guide::picture logo(const std::string& url, unsigned width, unsigned height) {
    return {url, "image/png", "logo_unrestricted", width, height, nullptr};
}

service with_logos(std::vector<dabspi::guide::picture> logos) {
    service made = station({});
    made.pictures = std::move(logos);
    return made;
}

TEST(GuideComparison, OfAGuideWithItselfFindsNothing) {
    const service one = station({talk("News", 60), talk("", 120, 0)});
    EXPECT_THAT(said(one, one), IsEmpty());
}

TEST(GuideComparison, TellsServicesThatAreMissingAddedAndRenamed) {
    const service stays = station({}, {0xE1, 0xC221, 0});
    service renamed = stays;
    renamed.names = medium("Other");
    EXPECT_THAT(
        said(guide_of({stays, station({talk("News", 0)}, {0xE1, 0xC222, 0})}),
             guide_of({renamed, station({}, {0xE1, 0xC223, 0})})),
        ElementsAre("service-renamed: the medium name is \"Other\" instead of \"Station c221\"",
                    "service-missing: not in B (1 programme)", "service-added: only in B (0 programmes)"));
}

TEST(GuideComparison, FindsAServiceWithoutItsEccBySIdAndScids) {
    const service known = station({talk("News", 60)}, {0xE1, 0xC221, 0});
    service unknown = station({talk("News", 60)}, {0, 0xC221, 0});
    unknown.names = known.names;
    EXPECT_THAT(said(known, unknown), IsEmpty());
    EXPECT_THAT(said(unknown, known), IsEmpty());
    service elsewhere = known;
    elsewhere.id.ecc = 0xE0;
    EXPECT_EQ(said(known, elsewhere).size(), 2U);
    unknown.id.scids = 1;
    EXPECT_EQ(said(known, unknown).size(), 2U);
}

TEST(GuideComparison, DoesNotCompareWhatAnUnannouncedServiceCannotSay) {
    const service announced = station({talk("News", 60)});
    service programmes_alone = announced;
    programmes_alone.announced = false;
    programmes_alone.names = {};
    EXPECT_THAT(
        said(announced, programmes_alone),
        ElementsAre("service-information-missing: B has programmes of it, and no service information"));
    EXPECT_THAT(said(programmes_alone, announced),
                ElementsAre("service-information-added: A has programmes of it, and no service information"));
    EXPECT_THAT(said(programmes_alone, programmes_alone), IsEmpty());
}

TEST(GuideComparison, TellsDaysAsAWhole) {
    EXPECT_THAT(said(station({talk("A", 60), talk("B", 120), talk("C", 1500)}), station({talk("C", 1500)})),
                ElementsAre("day-missing: not in B (2 programmes)"));
    EXPECT_THAT(said(station({}), station({talk("C", 1500)})),
                ElementsAre("day-added: only in B (1 programme)"));
}

TEST(GuideComparison, TellsWhatHappenedToProgrammes) {
    const service a = station({talk("Gone", 0), talk("Moved", 60), talk("Named", 120), talk("Long", 180)});
    const service b =
        station({talk("Moved", 65), talk("Renamed", 120), talk("Long", 180, 30), talk("New", 300)});
    EXPECT_THAT(said(a, b),
                ElementsAre("programme-missing: 00:00Z \"Gone\" is not in B",
                            "programme-added: 05:00Z \"New\" is only in B",
                            "programme-moved: 01:00Z \"Moved\" begins at 01:05Z, 5 min later",
                            "programme-renamed: 02:00Z \"Named\": the medium name is \"Renamed\" instead of "
                            "\"Named\"",
                            "programme-duration: 03:00Z \"Long\" is 30 min instead of 1 h"));
}

TEST(GuideComparison, SaysTheDateOfAMoveToAnotherDay) {
    EXPECT_THAT(said(station({talk("Quiz", 60), talk("News", 1500)}),
                     station({talk("News", 1500), talk("Quiz", 1560), talk("Night", 0)})),
                ElementsAre("programme-added: 00:00Z \"Night\" is only in B",
                            "programme-moved: 01:00Z \"Quiz\" begins at 2026-03-11 02:00Z, 25 h later"));
}

TEST(GuideComparison, AllowsTheTolerance) {
    compare_settings settings;
    settings.tolerance = 60;
    programme later = talk("News", 61, 61);
    EXPECT_THAT(said(station({talk("News", 60)}), station({later}), settings), IsEmpty());
    ++later.start;
    ++later.duration;
    EXPECT_EQ(said(station({talk("News", 60)}), station({later}), settings).size(), 2U);
}

TEST(GuideComparison, TellsDescriptionsFromWhereTheyDiffer) {
    programme a = talk("News", 60);
    a.descriptions.long_texts = {{"A text that is the same for a while, and then one thing", ""}};
    programme b = a;
    b.descriptions.long_texts = {{"A text that is the same for a while, and then another", ""}};
    EXPECT_THAT(said(station({a}), station({b})),
                ElementsAre("description: 01:00Z \"News\": the long description is ...\"r a while, and then "
                            "another\" instead of ...\"r a while, and then one thing\""));
    b.descriptions = {};
    EXPECT_THAT(said(station({a}), station({b})),
                ElementsAre("description: 01:00Z \"News\": B has no long description, A has \"A text that is "
                            "the same for a while, and then one thing\""));
}

TEST(GuideComparison, TellsGenresInAnyOrder) {
    programme a = talk("News", 60);
    a.genres = {{3, {6, 2}}, {3, {1, 1}}};
    programme b = a;
    std::swap(b.genres[0], b.genres[1]);
    EXPECT_THAT(said(station({a}), station({b})), IsEmpty());
    b.genres = {{3, {1, 1}}, {3, {2}}};
    EXPECT_THAT(said(station({a}), station({b})),
                ElementsAre("genre: 01:00Z \"News\": B does not have "
                            "urn:tva:metadata:cs:ContentCS:2005:3.6.2 (Music: Jazz); only B has "
                            "urn:tva:metadata:cs:ContentCS:2005:3.2 (Sports)"));
}

TEST(GuideComparison, TellsLogosByNameAndSize) {
    const service a = with_logos({logo("a.png", 32, 32), logo("b.png", 128, 128), logo("c.png", 320, 240)});
    const service b = with_logos({logo("a.png", 64, 64), logo("d.png", 128, 128), logo("e.png", 600, 600)});
    EXPECT_THAT(said(a, b), ElementsAre("logo-missing: logo \"c.png\", 320x240 is not in B",
                                        "logo-added: logo \"e.png\", 600x600 is only in B",
                                        "logo-size: logo \"a.png\", 32x32: it is 64x64 instead of 32x32",
                                        "logo-name: logo \"b.png\", 128x128: its name in B is \"d.png\""));
}

TEST(GuideComparison, KnowsTheSizesThatTypesStandFor) {
    dabspi::guide::picture square = logo("a.png", 0, 0);
    square.type = "logo_colour_square";
    EXPECT_THAT(said(with_logos({square}), with_logos({logo("a.png", 32, 32)})), IsEmpty());
}

TEST(GuideComparison, ComparesImagesByTheirBytesWhereBothSidesHaveImages) {
    programme_guide a = guide_of({with_logos({logo("a.png", 32, 32), logo("b.png", 64, 64)})});
    programme_guide b = a;
    a.services[0].pictures[0].content = image(1);
    a.services[0].pictures[1].content = image(2);
    comparison made = compare_guides(a, b, {});
    EXPECT_THAT(made.differences, IsEmpty());
    EXPECT_THAT(made.said, ElementsAre("the images of 2 logos are not compared: only one side has images"));

    b.services[0].pictures[0].content = image(3);
    a.counts.images = 2;
    b.counts.images = 1;
    EXPECT_THAT(
        said(a, b),
        ElementsAre("logo-missing: logo \"b.png\", 64x64 is announced in B, but its image is not there",
                    "logo-picture: logo \"a.png\", 32x32: the image is another one, 2 bytes instead "
                    "of 2"));
    EXPECT_THAT(said(b, a)[0],
                "logo-added: logo \"b.png\", 64x64 is announced in A, but its image is only in B");
}

TEST(GuideComparison, LeavesOutWhatIsToBeIgnored) {
    compare_settings settings;
    settings.ignored = {difference_kind::programme_moved};
    const service a = station({talk("Moved", 60), talk("Long", 180)});
    const service b = station({talk("Moved", 65), talk("Long", 180, 30)});
    EXPECT_THAT(said(a, b, settings),
                ElementsAre("programme-duration: 03:00Z \"Long\" is 30 min instead of 1 h"));
}

TEST(GuideComparison, ShowsHostileNamesWithoutControlCharacters) {
    const std::string name = "\x1b[31m\xE2\x80\xAE\n";
    for (const std::string& each : said(station({talk(name, 60)}), station({talk("Other", 60)})))
        EXPECT_EQ(each.find_first_of("\x1b\n"), std::string::npos) << each;
}

TEST(TimeWords, AreUtcWithTheDateWhereItIsAnother) {
    using namespace dabspi::compare;
    EXPECT_EQ(date_text(kDay), "2026-03-10");
    EXPECT_EQ(clock_text(kMidnight + 3660, kDay), "01:01Z");
    EXPECT_EQ(clock_text(kMidnight + 30, kDay), "00:00:30Z");
    EXPECT_EQ(clock_text(kMidnight - 60, kDay), "2026-03-09 23:59Z");
    EXPECT_EQ(clock_text(-86400 - 1, -2), "23:59:59Z");
    EXPECT_EQ(utc_text(kMidnight + 1), "2026-03-10T00:00:01Z");
    EXPECT_EQ(span_text(3661), "1 h 1 min 1 s");
    EXPECT_EQ(span_text(0), "0 s");
}

TEST(TimeWords, ReadSpans) {
    using dabspi::compare::parse_span;
    EXPECT_EQ(parse_span("30s"), 30);
    EXPECT_EQ(parse_span("2min"), 120);
    EXPECT_EQ(parse_span("24h"), 86400);
    EXPECT_EQ(parse_span("0s"), 0);
    for (const char* const wrong :
         {"", "1", "min", "-1min", "+1min", "1 min", "1m", "25h", "1.5min", "99999999999999999999s"})
        EXPECT_EQ(parse_span(wrong), std::nullopt) << wrong;
}

}  // namespace

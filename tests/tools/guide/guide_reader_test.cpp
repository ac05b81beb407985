// What a programme guide takes from SPI objects.
#include "tools/guide/guide_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "testkit/spi_builder_objects.h"

namespace {

namespace sb = spi_builder;
namespace tag = spi_builder::tag;
using dabspi::guide::guide_reader;
using dabspi::guide::programme;
using dabspi::guide::programme_guide;
using dabspi::guide::service;
using dabspi::guide::service_id;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t kDay = 61109;  // 2026-03-10
constexpr std::int64_t kMidnight = (std::int64_t{61109} - 40587) * 86400;
constexpr sb::service_id kOne = {0xE1, 0xC185, 0xC221, 0};
constexpr sb::service_id kOneElsewhere = {0xE1, 0xC186, 0xC221, 0};
constexpr sb::service_id kTwo = {0xE1, 0xC185, 0xC222, 0};

std::shared_ptr<const dabspi::bytes> shared(const sb::bytes& content) {
    return std::make_shared<const dabspi::bytes>(content);
}

sb::programme_data talk(const std::string& name, unsigned hour, std::vector<sb::service_id> bearers = {}) {
    return {{"", name, ""}, sb::local_time(kDay, hour, 0, 2), 3600, {}, std::move(bearers)};
}

sb::bytes schedule_of(const sb::service_id& scope, std::vector<sb::programme_data> programmes) {
    sb::schedule_data data;
    data.scope = scope;
    data.programmes = std::move(programmes);
    return sb::pi_object({data});
}

// Each an object of its own, without a content name.
programme_guide guide_of(const std::vector<sb::bytes>& objects) {
    guide_reader reader;
    for (const sb::bytes& each : objects)
        reader.add_object(shared(each), "", {});
    return reader.finish();
}

std::vector<std::string> names_of(const service& of) {
    std::vector<std::string> names;
    for (const programme& each : of.programmes)
        names.push_back(name_of(each));
    return names;
}

std::vector<std::string> ids_of(const programme_guide& of) {
    std::vector<std::string> ids;
    for (const service& each : of.services)
        ids.push_back(each.id.text());
    return ids;
}

TEST(Guide, GivesProgrammesToTheServiceOfTheScope) {
    const programme_guide guide = guide_of({schedule_of(kOne, {talk("Late", 9), talk("Early", 7)})});
    ASSERT_THAT(ids_of(guide), ElementsAre("e1.c221.0"));
    EXPECT_THAT(names_of(guide.services[0]), ElementsAre("Early", "Late"));
    const programme& early = guide.services[0].programmes[0];
    EXPECT_EQ(early.start, kMidnight + 6 * 3600) << "07:00 at +01:00";
    EXPECT_EQ(early.offset, 2);
    EXPECT_EQ(early.stop(), kMidnight + 7 * 3600);
    EXPECT_FALSE(guide.services[0].announced);
    EXPECT_EQ(guide.services[0].ensembles.begin()->text(), "e1.c185");
}

TEST(Guide, GivesProgrammesToTheServicesOfTheirBearersFirst) {
    const programme_guide guide = guide_of({schedule_of(kOne, {talk("Two's", 7, {kTwo}), talk("One's", 8)})});
    ASSERT_THAT(ids_of(guide), ElementsAre("e1.c221.0", "e1.c222.0"));
    EXPECT_THAT(names_of(guide.services[0]), ElementsAre("One's"));
    EXPECT_THAT(names_of(guide.services[1]), ElementsAre("Two's"));
}

TEST(Guide, GivesProgrammesToTheDefaultServiceLast) {
    const sb::bytes object =
        sb::elem(tag::epg, {sb::elem(tag::default_content_id, sb::content_id(kTwo)),
                            sb::elem(tag::schedule, {sb::programme(talk("Default's", 7))})});
    EXPECT_THAT(ids_of(guide_of({object})), ElementsAre("e1.c222.0"));
}

TEST(Guide, HasAServiceThatIsOnTwoEnsemblesOnce) {
    const programme_guide guide =
        guide_of({sb::si_object(0xE1, 0xC185, {{{"One", "", ""}, {kOne}, {}}}),
                  sb::si_object(0xE1, 0xC186, {{{"One", "", ""}, {kOneElsewhere}, {}}}),
                  schedule_of(kOne, {talk("A", 7, {kOne, kOneElsewhere})})});
    ASSERT_THAT(ids_of(guide), ElementsAre("e1.c221.0"));
    EXPECT_EQ(guide.services[0].ensembles.size(), 2U);
    EXPECT_EQ(guide.services[0].programmes.size(), 1U);
    EXPECT_TRUE(guide.services[0].announced);
    EXPECT_EQ(guide.counts.same_start, 0U);
}

TEST(Guide, CountsProgrammesWithoutAServiceOrATime) {
    const sb::bytes nobody = sb::elem(
        tag::epg, {sb::elem(tag::schedule, {sb::programme(talk("Nobody's", 7)),
                                            sb::elem(tag::programme, {sb::name_elements({"x", "", ""})})})});
    const programme_guide guide = guide_of({nobody});
    EXPECT_THAT(guide.services, IsEmpty());
    EXPECT_EQ(guide.counts.without_service, 1U);
    EXPECT_EQ(guide.counts.without_time, 1U);
}

TEST(Guide, TakesTheLaterObjectOfOneName) {
    guide_reader reader;
    reader.add_object(shared(schedule_of(kOne, {talk("Old", 7), talk("Dropped", 8)})), "today", 0xC185);
    reader.add_object(shared(schedule_of(kOne, {talk("Other", 12)})), "evening", 0xC185);
    reader.add_object(shared(schedule_of(kOne, {talk("New", 7)})), "today", 0xC185);
    const programme_guide guide = reader.finish();
    EXPECT_THAT(names_of(guide.services.at(0)), ElementsAre("New", "Other"));
    EXPECT_EQ(guide.counts.replaced_objects, 1U);
}

TEST(Guide, TakesTheLaterProgrammeOfOneStart) {
    const programme_guide guide =
        guide_of({schedule_of(kOne, {talk("Old", 7)}), schedule_of(kOne, {talk("New", 7)}),
                  schedule_of(kOne, {talk("New", 7)})});
    EXPECT_THAT(names_of(guide.services.at(0)), ElementsAre("New"));
    EXPECT_EQ(guide.counts.same_start, 1U) << "the third says nothing else";
}

TEST(Guide, FindsTheEccThatAnIdentifierLeavesOut) {
    // A content ID without ECC and EId, as the edition of 2008 codes it.
    const sb::bytes scope =
        sb::elem(tag::scope, {sb::elem(tag::service_scope, {sb::attr(0x80, {0x00, 0xC2, 0x21})})});
    const sb::bytes object =
        sb::elem(tag::epg, {sb::elem(tag::schedule, {scope, sb::programme(talk("A", 7))})});
    EXPECT_THAT(ids_of(guide_of({object})), ElementsAre("00.c221.0"));
    EXPECT_THAT(ids_of(guide_of({object, sb::si_object(0xE1, 0xC185, {{{"One", "", ""}, {kOne}, {}}})})),
                ElementsAre("e1.c221.0"));
    guide_reader reader;
    reader.add_object(shared(object), "a", 0xC185);
    reader.add_object(shared(sb::si_object(0xE1, 0xC185, {{{"Two", "", ""}, {kTwo}, {}}})), "b", 0xC185);
    EXPECT_THAT(ids_of(reader.finish()), ElementsAre("e1.c221.0", "e1.c222.0"));
}

TEST(Guide, KeepsNamesDescriptionsGenresAndLinks) {
    const sb::bytes english = sb::attr(0x80, sb::str("en"));
    const sb::bytes description =
        sb::elem(tag::media_description,
                 {sb::elem(tag::short_description, {sb::text("short")}),
                  sb::elem(tag::long_description, sb::join({english, sb::text("a longer one")}))});
    const sb::bytes genre = sb::elem(tag::genre, {sb::attr(0x80, {0x03, 0x06, 0x08})});
    const sb::bytes link = sb::elem(tag::link, {sb::attr(0x80, sb::str("https://example.org/"))});
    sb::programme_data data = talk("Medium", 7, {kOne});
    data.name.long_name = "A long name";
    sb::bytes whole = sb::programme(data);
    const sb::bytes inside(whole.begin() + 2, whole.end());
    const sb::bytes object = sb::elem(
        tag::epg,
        {sb::elem(tag::default_language, sb::str("de")),
         sb::elem(tag::schedule, {sb::elem(tag::programme, sb::join({inside, description, genre, link}))})});
    const programme_guide guide = guide_of({object});
    ASSERT_EQ(guide.services.size(), 1U);
    const programme& made = guide.services[0].programmes.at(0);
    EXPECT_EQ(name_of(made), "A long name");
    EXPECT_EQ(made.names.medium_texts.at(0).language, "de") << "the object's language";
    EXPECT_EQ(made.descriptions.short_texts.at(0).value, "short");
    EXPECT_EQ(made.descriptions.first()->value, "a longer one");
    EXPECT_EQ(made.descriptions.first()->language, "en");
    EXPECT_EQ(dabspi::spi_object::genre_text(made.genres.at(0)), "urn:tva:metadata:cs:ContentCS:2005:3.6.8");
    EXPECT_EQ(made.links.at(0).uri, "https://example.org/");
    EXPECT_EQ(made.language, "de");
}

TEST(Guide, RepairsAndCountsTextsThatAreNotUtf8) {
    const programme_guide guide = guide_of({schedule_of(kOne, {talk("a\xFFz\xEF\xBF\xBE", 7)})});
    EXPECT_THAT(names_of(guide.services.at(0)), ElementsAre("a\uFFFDz\uFFFD"));
    EXPECT_EQ(guide.counts.repaired_characters, 2U);
}

TEST(Guide, FindsThePicturesThatWereSent) {
    guide_reader reader;
    const sb::logo_data logo = {"image/png", "a.png", spi_builder::logo_unrestricted, 128, 128};
    reader.add_object(shared(sb::si_object(0xE1, 0xC185, {{{"One", "", ""}, {kOne}, {logo}}})), "", {});
    reader.add_image(shared({1, 2, 3}), "a.png");
    reader.add_image(shared({4}), "b.png");
    const programme_guide guide = reader.finish();
    EXPECT_EQ(guide.services.at(0).pictures.at(0).content->size(), 3U);
    EXPECT_EQ(guide.counts.images, 2U);
    EXPECT_EQ(guide.counts.unused_images, 1U);
}

TEST(Guide, FindsServicesByTheirIdentifiers) {
    const programme_guide guide =
        guide_of({schedule_of(kOne, {talk("A", 7)}), schedule_of(kTwo, {talk("B", 7)})});
    ASSERT_NE(guide.find({0xE1, 0xC222, 0}), nullptr);
    EXPECT_EQ(guide.find({0xE1, 0xC222, 0})->id.sid, 0xC222U);
    EXPECT_EQ(guide.find({0xE1, 0xC223, 0}), nullptr);
    EXPECT_EQ(guide.find({0xE1, 0xC221, 1}), nullptr);
}

TEST(Guide, KnowsTheLocalDayBeforeItsFirstOneToo) {
    programme one;
    one.start = kMidnight - 1800;
    EXPECT_EQ(one.local_day(), kMidnight / 86400 - 1);
    one.offset = 1;
    EXPECT_EQ(one.local_day(), kMidnight / 86400);
    one.start = -1;
    one.offset = 0;
    EXPECT_EQ(one.local_day(), -1);
}

TEST(GuideReader, DescribesAServiceAsTheSameEnsembleInWhateverOrderTheyCome) {
    const sb::bytes here = sb::si_object(0xE1, kOne.eid, {{{"", "Here", ""}, {kOne}, {}}});
    const sb::bytes elsewhere =
        sb::si_object(0xE1, kOneElsewhere.eid, {{{"", "Elsewhere", ""}, {kOneElsewhere}, {}}});
    for (const auto& objects : {std::vector<sb::bytes>{here, elsewhere}, {elsewhere, here}}) {
        const programme_guide guide = guide_of(objects);
        ASSERT_EQ(guide.services.size(), 1U);
        EXPECT_EQ(name_of(guide.services[0]), "Elsewhere");
        EXPECT_EQ(guide.services[0].ensembles.size(), 2U);
    }
}

}  // namespace

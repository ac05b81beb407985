// From documents and images to a carousel, and what is said of them.
#include "tools/carousel/prepared_carousel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/carousel/small_broadcast.h"
#include "tools/carousel/carousel_report.h"
#include "tools/carousel/checked_carousel.h"

namespace {

using namespace dabspi::carousel;
using namespace carousel_test;
using dabspi::transmit::importance;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(PreparedCarousel, SortsObjectsByWhatTheyAreToAReceiver) {
    const small_broadcast broadcast;
    const prepared_carousel got = prepared(broadcast.options);
    ASSERT_THAT(got.errors, IsEmpty());
    std::vector<importance> what;
    std::vector<std::string> names;
    for (std::size_t i = 0; i < got.objects.size(); ++i) {
        what.push_back(got.tuned[i].what);
        names.push_back(got.objects[i].sent.name);
    }
    EXPECT_THAT(what, ElementsAre(importance::service_information, importance::today, importance::tomorrow,
                                  importance::logo, importance::logo));
    EXPECT_THAT(names, ElementsAre("dC185.EHS", "w20260302dC221.EHB", "w20260303dC221.EHB",
                                   "http://example.com/c221.png", "http://example.com/c222.png"));
    EXPECT_EQ(got.announced.offset_half_hours, 2);
    EXPECT_EQ(got.announced.spi_sid, 0xE1C00185U);
    ASSERT_EQ(got.announced.services.size(), 2U);
    EXPECT_EQ(got.announced.services[1].label, "Radio c222");
}

TEST(PreparedCarousel, SendsScopesInTheHeader) {
    const small_broadcast broadcast;
    const prepared_carousel got = prepared(broadcast.options);
    ASSERT_THAT(got.errors, IsEmpty());
    EXPECT_EQ(got.objects[0].sent.scope_id, (bytes{0xE1, 0xC1, 0x85}));
    EXPECT_EQ(got.objects[1].sent.scope_id, (bytes{0x40, 0xE1, 0xC1, 0x85, 0xC2, 0x21}));
    ASSERT_TRUE(got.objects[1].sent.scope_start.has_value());
    EXPECT_EQ(dabspi::spi_object::utc_text(*got.objects[1].sent.scope_start), "2026-03-01T23:00:00Z");
}

TEST(PreparedCarousel, NamesFileAndLineOfABadDocument) {
    const small_broadcast broadcast;
    write_file(broadcast.folder, "today.xml",
               "<epg xmlns='http://www.worlddab.org/schemas/spi/31'>\n<schedule>\n<programme shortId='x'/>"
               "</schedule></epg>");
    const prepared_carousel got = prepared(broadcast.options);
    ASSERT_FALSE(got.errors.empty());
    EXPECT_THAT(got.errors.front(), HasSubstr("today.xml:3:"));
    EXPECT_THAT(got.errors.front(), HasSubstr("shortId"));
}

TEST(PreparedCarousel, RefusesImagesThatAreNone) {
    const small_broadcast broadcast;
    write_file(broadcast.folder, "logos/c223.png", "<html>not found</html>");
    write_file(broadcast.folder, "logos/c224.png", std::string("\x89PNG\r\n\x1a\n", 8) + "cut off");
    const prepared_carousel got = prepared(broadcast.options);
    ASSERT_FALSE(got.errors.empty());
    EXPECT_THAT(got.errors.front(), HasSubstr("logos/c223.png"));
}

TEST(PreparedCarousel, RefusesTwoObjectsOfOneName) {
    small_broadcast broadcast;
    write_file(broadcast.folder, "again.xml", pi_document("c221", "2026-03-02", "Again"));
    broadcast.options.inputs.push_back(broadcast.path("again.xml"));
    const prepared_carousel got = prepared(broadcast.options);
    ASSERT_EQ(got.errors.size(), 1U);
    EXPECT_THAT(got.errors.front(), HasSubstr("again.xml"));
    EXPECT_THAT(got.errors.front(), HasSubstr("today.xml; leave one of them out"));
}

TEST(PreparedCarousel, RefusesABitRateThatCannotHoldTheDirectory) {
    small_broadcast broadcast;
    for (int i = 0; i < 700; ++i)
        write_file(broadcast.folder, "many/a-rather-long-name-of-an-image-" + std::to_string(i) + ".png",
                   png_image());
    broadcast.options.inputs.push_back(broadcast.path("many"));
    broadcast.options.bit_rate = 8;
    const prepared_carousel got = prepared(broadcast.options);
    EXPECT_THAT(got.errors, IsEmpty());  // 48 s
    for (int i = 700; i < 1200; ++i)
        write_file(broadcast.folder, "many/a-rather-long-name-of-an-image-" + std::to_string(i) + ".png",
                   png_image());
    const prepared_carousel more = prepared(broadcast.options);
    ASSERT_EQ(more.errors.size(), 1U);
    EXPECT_THAT(more.errors.front(), HasSubstr("cannot hold even the directory"));
    EXPECT_THAT(more.errors.front(), HasSubstr("16 kbit/s"));
    broadcast.options.directory = "compressed";
    EXPECT_THAT(prepared(broadcast.options).errors, IsEmpty());
}

TEST(ImageVerdicts, SayWhyAReceiverWritesNoneAndGiveTheCommand) {
    const small_broadcast broadcast;
    write_file(broadcast.folder, "logos/c222.png",
               read_file(DABSPI_EXAMPLE_OBJECTS "/quillhaven-320x240.png"));
    write_file(broadcast.folder, "logos/other.png", png_image());
    const prepared_carousel got = prepared(broadcast.options);
    ASSERT_THAT(got.errors, IsEmpty());
    ASSERT_EQ(got.images.size(), 3U);
    EXPECT_TRUE(got.images[0].written);
    EXPECT_FALSE(got.images[1].written);
    EXPECT_EQ(got.images[1].why, "it is announced as 128 x 128, and has 320 x 240");
    EXPECT_THAT(got.images[1].remedy, HasSubstr("-resize 128x128"));
    EXPECT_EQ(got.images[2].why, "no service information announces it");
    const std::string report = carousel_report(got, broadcast.options);
    EXPECT_THAT(report, HasSubstr("Images: 3, of which receivers write 1\n"));
}

TEST(ImageVerdicts, KnowTheLargestImageThatIsWritten) {
    const small_broadcast broadcast;
    std::string padded = png_image();
    padded += std::string(22528 + 1 - padded.size(), 'x');
    write_file(broadcast.folder, "logos/c222.png", padded);
    const prepared_carousel got = prepared(broadcast.options);
    ASSERT_THAT(got.errors, IsEmpty());
    EXPECT_EQ(got.images[1].why, "it has 22529 bytes, and 22528 are written at most");
}

TEST(Budget, SaysWhatHasToGo) {
    small_broadcast broadcast;
    for (int i = 0; i < 6; ++i)
        write_file(broadcast.folder, "logos/large" + std::to_string(i) + ".png",
                   png_image() + std::string(static_cast<std::size_t>(2000 * i), 'x'));
    const prepared_carousel of = look_at_objects(broadcast.options);
    ASSERT_THAT(of.errors, IsEmpty());
    const left_out_objects all =
        what_has_to_go(of.objects, of.tuned, of.settings, wanted_wait::everything, 1000);
    EXPECT_TRUE(all.enough);
    EXPECT_THAT(all.objects, IsEmpty());
    const double wanted = all.before / 2;
    const left_out_objects some =
        what_has_to_go(of.objects, of.tuned, of.settings, wanted_wait::everything, wanted);
    EXPECT_TRUE(some.enough);
    EXPECT_LE(some.after, wanted);
    ASSERT_FALSE(some.objects.empty());
    EXPECT_THAT(of.objects[some.objects.front()].source, HasSubstr("large5.png"));
    const left_out_objects none =
        what_has_to_go(of.objects, of.tuned, of.settings, wanted_wait::everything, 0.05);
    EXPECT_FALSE(none.enough);
    for (const std::size_t each : none.objects)
        EXPECT_GT(of.tuned[each].what, importance::today);
}

TEST(CheckedCarousel, SaysWhatReceiversMakeOfIt) {
    const small_broadcast broadcast;
    const std::string clean = check_report_of(prepared(broadcast.options));
    EXPECT_THAT(clean, HasSubstr("Check: "));
    EXPECT_THAT(clean, testing::Not(HasSubstr("error")));
    write_file(broadcast.folder, "logos/c222.png",
               read_file(DABSPI_EXAMPLE_OBJECTS "/quillhaven-320x240.png"));
    EXPECT_THAT(check_report_of(prepared(broadcast.options)), HasSubstr("logo-other-size"));
}

}  // namespace

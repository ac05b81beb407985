// Logos and objects that are not reported to the host.
#include "tests/wrap/not_reported.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST_F(NotReported, AnImageBeforeItsAnnouncement) {
    tune();
    feed_image("logo.png");
    announce("si", {png("logo.png", 320, 240)});
    EXPECT_THAT(received(), IsEmpty());
    feed_image("logo.png");
    EXPECT_THAT(received(), ElementsAre("logo E1C2210_4.PNG of size 4"));
}

TEST_F(NotReported, AnImageOfAnotherDataServiceThanItsAnnouncement) {
    tune();
    announce("si", {png("logo.png", 320, 240)});
    feed_image("logo.png", 100, 3, 0xE1C00222);
    EXPECT_THAT(received(), IsEmpty());
    feed_image("logo.png");
    EXPECT_THAT(received(), ElementsAre("logo E1C2210_4.PNG of size 4"));
}

TEST_F(NotReported, LogosOfOtherFormatsAndSizes) {
    tune();
    announce("si", {{"image/jpeg", "a.jpg", {}, 320, 240},
                    png("b.png", 32, 32),
                    png("c.png", 112, 32),
                    png("d.png", 600, 600),
                    png("e.png", 240, 320),
                    png("f.png", 128, 128)});
    for (const char* name : {"a.jpg", "b.png", "c.png", "d.png", "e.png", "f.png"})
        feed_image(name);
    EXPECT_THAT(received(), ElementsAre("logo E1C2210_3.PNG of size 3"));
}

TEST_F(NotReported, LogosOfThirtyTwoBitServices) {
    tune();
    announce("a", {png("a.png", 320, 240)}, 0xE1C22101);
    announce("b", {png("b.png", 320, 240)});
    feed_image("a.png");
    feed_image("b.png");
    EXPECT_THAT(received(), ElementsAre("logo E1C2210_4.PNG of size 4"));
}

TEST_F(NotReported, ImagesThatAreTooLarge) {
    tune();
    announce("si", {png("a.png", 320, 240), png("b.png", 128, 128)});
    feed_image("a.png", 22529);
    feed_image("b.png", 22528);
    EXPECT_THAT(received(), ElementsAre("logo E1C2210_3.PNG of size 3"));
}

TEST_F(NotReported, ASmallLogoBesideALargeOne) {
    tune();
    announce("si", {png("large.png", 320, 240), png("small.png", 128, 128)});
    feed_image("large.png");
    feed_image("small.png");
    EXPECT_THAT(received(), ElementsAre("logo E1C2210_4.PNG of size 4"));
}

TEST_F(NotReported, ASecondImageForOneAnnouncement) {
    tune();
    announce("a", {png("logo.png", 320, 240)});
    feed_image("logo.png");
    EXPECT_THAT(received(), ElementsAre("logo E1C2210_4.PNG of size 4"));
    feed_image("logo.png");
    announce("a", {png("logo.png", 320, 240)});  // read already: announces nothing anew
    feed_image("logo.png");
    EXPECT_THAT(received(), IsEmpty());
    announce("b", {png("logo.png", 320, 240)});
    feed_image("logo.png");
    EXPECT_THAT(received(), ElementsAre("logo E1C2210_4.PNG of size 4"));
}

TEST_F(NotReported, ALogoThatCouldNotBeWritten) {
    tune();
    announce("si", {png("a.png", 320, 240), png("b.png", 128, 128)});
    std::filesystem::create_directory(here.at("/mnt/data/HdStationLogo/E1C2210_3.PNG"));
    feed_image("b.png");
    EXPECT_THAT(received(), IsEmpty());
    feed_image("a.png");
    EXPECT_THAT(received(), ElementsAre("logo E1C2210_4.PNG of size 4"));
}

TEST_F(NotReported, FilesOfAnEnsembleThatWasLeftStay) {
    tune();
    announce("si", {png("logo.png", 320, 240)});
    feed_image("logo.png");
    EXPECT_THAT(received(), ElementsAre("logo E1C2210_4.PNG of size 4"));
    tune(0xD001, 0xC182);
    EXPECT_THAT(received(), IsEmpty());
    EXPECT_EQ(file_content(here.at("/mnt/data/HdStationLogo/E1C2210_4.PNG")), std::string(100, 'p'));
}

TEST_F(NotReported, ObjectsOfOtherContentTypes) {
    tune();
    announce("si", {png("logo.png", 320, 240)});
    for (const std::uint8_t type : std::vector<std::uint8_t>{0, 1, 3, 4, 5, 6, 8, 255})
        feed(type, 3, "logo.png", spi_builder::bytes(100, 'p'));
    for (const std::uint16_t subtype : std::vector<std::uint16_t>{0, 2, 4, 259})
        feed_image("logo.png", 100, subtype);
    EXPECT_THAT(received(), IsEmpty());
    feed_image("logo.png");
    EXPECT_THAT(received(), ElementsAre("logo E1C2210_4.PNG of size 4"));
}

}  // namespace

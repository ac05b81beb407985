// A carousel that goes on while its documents change.
#include "tools/carousel/followed_carousel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/tools/carousel/small_broadcast.h"
#include "tests/tools/transmit/received.h"

namespace {

using namespace dabspi::carousel;
using namespace carousel_test;
using testing::HasSubstr;
using transmit_test::receiver;

class FollowedCarousel : public testing::Test {
 protected:
    FollowedCarousel()
        : followed_(broadcast_.options, output_form::packets,
                    [this](const std::string& line) { said_ += line + "\n"; }) {}

    // As long as one round of what is sent now takes, twice.
    void play() {
        for (std::uint32_t i = 0; i < 2 * followed_.current().made.sent.frames; ++i) {
            bytes frame;
            followed_.append_frame(frame);
            receiver_.feed(frame, frame.size());
        }
    }
    void replace(const std::string& name, const std::string& text) {
        // Beside it, then in its place, as editors do it: another file, whatever the clock's resolution.
        write_file(broadcast_.folder, "new", text);
        std::filesystem::rename(broadcast_.path("new"), broadcast_.path(name));
        followed_.look();
    }
    std::uint16_t id_of(const std::string& name) { return receiver_.objects.at(name).transport_id; }

    small_broadcast broadcast_;
    std::string said_;
    followed_carousel followed_;
    receiver receiver_;
};

constexpr const char* kToday = "w20260302dC221.EHB";
constexpr const char* kTomorrow = "w20260303dC221.EHB";

TEST_F(FollowedCarousel, SendsANewVersionOfWhatHasChanged) {
    ASSERT_TRUE(followed_.start()) << said_;
    play();
    ASSERT_EQ(receiver_.objects.size(), 5U);
    const std::uint16_t today = id_of(kToday);
    const std::uint16_t tomorrow = id_of(kTomorrow);
    const bytes before = receiver_.objects.at(kToday).body;
    followed_.look();
    EXPECT_EQ(said_.find("a new version"), std::string::npos) << said_;

    replace("today.xml", pi_document("c221", "2026-03-02", "Changed"));
    EXPECT_THAT(said_, HasSubstr("a new version: 1 objects changed, 0 added, 0 removed\n"));
    play();
    EXPECT_NE(receiver_.objects.at(kToday).body, before);
    EXPECT_NE(id_of(kToday), today);
    EXPECT_EQ(id_of(kTomorrow), tomorrow);
    EXPECT_EQ(receiver_.continuity_jumps, 0U);
    EXPECT_EQ(receiver_.packets.counts().of(dabspi::air::packet_drop::lost_packets), 0U);
    EXPECT_EQ(receiver_.deliveries, 6U);
}

TEST_F(FollowedCarousel, GoesOnWithTheLastGoodVersion) {
    ASSERT_TRUE(followed_.start()) << said_;
    play();
    replace("today.xml", "<epg");
    EXPECT_THAT(said_, HasSubstr("today.xml:1:"));
    EXPECT_THAT(said_, HasSubstr("the last good carousel goes on\n"));
    play();
    EXPECT_EQ(receiver_.deliveries, 5U);
    EXPECT_EQ(receiver_.continuity_jumps, 0U);
    const std::string said = said_;
    followed_.look();
    EXPECT_EQ(said_, said);  // it is not said again
    replace("today.xml", pi_document("c221", "2026-03-02", "Mended"));
    EXPECT_THAT(said_, HasSubstr("a new version: 1 objects changed"));
    play();
    EXPECT_EQ(receiver_.deliveries, 6U);
}

TEST_F(FollowedCarousel, SeesFilesComeAndGo) {
    ASSERT_TRUE(followed_.start()) << said_;
    play();
    write_file(broadcast_.folder, "logos/new.png", png_image());
    followed_.look();
    EXPECT_THAT(said_, HasSubstr("0 objects changed, 1 added, 0 removed\n"));
    std::filesystem::remove(broadcast_.path("logos/c222.png"));
    followed_.look();
    EXPECT_THAT(said_, HasSubstr("0 objects changed, 0 added, 1 removed\n"));
    std::filesystem::remove(broadcast_.path("si.xml"));
    followed_.look();
    EXPECT_THAT(said_, HasSubstr("si.xml: cannot be read"));
    write_file(broadcast_.folder, "si.xml", si_document());
    followed_.look();
    EXPECT_THAT(said_, HasSubstr("the inputs are good again, and as they were\n"));
    play();
    EXPECT_EQ(receiver_.objects.count("new.png"), 1U);
    EXPECT_EQ(receiver_.continuity_jumps, 0U);
}

TEST_F(FollowedCarousel, RefusesABadStart) {
    write_file(broadcast_.folder, "si.xml", "<epg");
    EXPECT_FALSE(followed_.start());
    EXPECT_THAT(said_, HasSubstr("si.xml:1:"));
}

TEST_F(FollowedCarousel, TomorrowBecomesTodayAtMidnight) {
    carousel_options late = broadcast_.options;
    late.clock = "2026-03-02T23:58";
    followed_carousel followed(late, output_form::packets,
                               [this](const std::string& line) { said_ += line + "\n"; });
    ASSERT_TRUE(followed.start()) << said_;
    EXPECT_EQ(followed.current().tuned[2].what, dabspi::transmit::importance::tomorrow);
    bytes frame;
    for (int i = 0; i < 2 * 2500; ++i)
        followed.append_frame(frame);
    followed.look();
    EXPECT_THAT(said_, HasSubstr("a new version: 0 objects changed"));
    EXPECT_EQ(followed.current().tuned[2].what, dabspi::transmit::importance::today);
}

}  // namespace

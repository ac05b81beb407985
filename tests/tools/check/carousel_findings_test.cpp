// What only the carousels of a multiplex show.
#include <gtest/gtest.h>

#include "src/parse/mot_content.h"
#include "testkit/multiplex/eti_writer.h"
#include "testkit/on_air/spi_multiplex.h"
#include "tools/check/received_input.h"
#include "tools/check/rules.h"

namespace {

namespace kit = carousel_kit;
namespace mb = multiplex_builder;
namespace air = dabspi::air;
using namespace dabspi::check;

constexpr std::uint64_t kSecond = 1000 / 24;

std::vector<finding> findings_in(const received_carousels& from, const history& past = {}) {
    finding_list found;
    look_at_carousels(from, past, found);
    return found.take_sorted();
}

std::string codes_in(const received_carousels& from, const history& past = {}) {
    std::string text;
    for (const finding& each : findings_in(from, past))
        text += (text.empty() ? "" : " ") + std::string(entry_of(each.code).name);
    return text;
}

// Received `times` times, the first time at `first` seconds and then every `interval`.
air::object_statistics object(const std::string& name, unsigned type, unsigned subtype, unsigned first,
                              unsigned interval, unsigned times) {
    air::object_statistics made;
    made.name = name;
    made.content_type = static_cast<std::uint8_t>(type);
    made.content_subtype = static_cast<std::uint16_t>(subtype);
    made.state = air::object_state::received;
    for (unsigned i = 0; i < times; ++i)
        made.times.add((first + i * interval) * kSecond);
    return made;
}

air::object_statistics service_information(unsigned first, unsigned interval = 20, unsigned times = 5) {
    return object("si", spi::kMotSpiObject, 0, first, interval, times);
}
air::object_statistics image(unsigned first, unsigned interval = 20, unsigned times = 5) {
    return object("logo.png", spi::kMotImage, 3, first, interval, times);
}

// One whole carousel with a directory every 20 seconds.
received_carousels one_carousel(const std::vector<air::object_statistics>& objects) {
    received_carousels made;
    made.frames = 100 * kSecond;
    made.has_clock = true;
    air::carousel_report report;
    report.component.sid = 0xE1C00098;
    report.component.long_id = true;
    report.component.sub_channel = 30;
    report.component.address = 5;
    report.carousel.mode = air::carousel_mode::directory;
    report.carousel.counts.groups = 100;
    report.carousel.objects = objects;
    for (unsigned i = 0; i < 5; ++i)
        report.carousel.directory_times.add(i * 20 * kSecond);
    made.carousels = {report};
    made.sub_channels = {{30, {}}};
    return made;
}

TEST(CarouselFindings, FindNothingInAGoodCarousel) {
    EXPECT_EQ(codes_in(one_carousel({service_information(2), image(5)})), "");
}

TEST(CarouselFindings, FindSpiThatIsNotSent) {
    received_carousels given = one_carousel({});
    given.carousels[0].carousel = {};
    EXPECT_EQ(codes_in(given), "spi-not-sent");
    EXPECT_EQ(findings_in(given)[0].text, "data service E1C00098, sub-channel 30, address 5");
}

TEST(CarouselFindings, FindAnEmptyDirectory) {
    EXPECT_EQ(codes_in(one_carousel({})), "directory-empty");
}

TEST(CarouselFindings, FindObjectsThatWereNeverWhole) {
    air::object_statistics half = image(0, 20, 0);
    half.state = air::object_state::incomplete;
    half.segments_held = 3;
    half.segments = 7;
    const received_carousels given = one_carousel({service_information(2), half});
    EXPECT_EQ(codes_in(given), "never-completed");
    EXPECT_EQ(findings_in(given)[0].text, "\"logo.png\": 3 of 7 segments in 98.4 s");
}

TEST(CarouselFindings, FindALongCycle) {
    EXPECT_EQ(codes_in(one_carousel({service_information(2), image(5, 290, 3)})), "");
    EXPECT_EQ(codes_in(one_carousel({service_information(2), image(5, 310, 3)})), "cycle-long");
}

TEST(CarouselFindings, FindImagesThatComeFirstInEveryRound) {
    EXPECT_EQ(codes_in(one_carousel({service_information(9), image(5)})), "images-first");
}

TEST(CarouselFindings, FindServiceInformationThatIsRarerThanImages) {
    EXPECT_EQ(codes_in(one_carousel({service_information(2, 40, 3), image(5)})), "service-info-rare");
}

TEST(CarouselFindings, FindFecThatIsSignalledAndNotSent) {
    received_carousels given = one_carousel({service_information(2)});
    given.carousels[0].component.fec_scheme = 1;
    given.sub_channels[0].counts.cells = 1000;
    EXPECT_EQ(codes_in(given), "fec-not-sent");
    given.sub_channels[0].counts.fec_sets = 5;
    EXPECT_EQ(codes_in(given), "");
}

TEST(CarouselFindings, FindCompressedObjects) {
    air::object_statistics packed = image(5);
    packed.compressed = true;
    EXPECT_EQ(codes_in(one_carousel({service_information(2), packed})), "object-compressed");
}

TEST(CarouselFindings, FindNamesOnTwoCarousels) {
    received_carousels given = one_carousel({service_information(2)});
    given.carousels.push_back(given.carousels[0]);
    given.carousels[1].component.address = 6;
    EXPECT_EQ(codes_in(given), "names-in-two");
}

TEST(CarouselFindings, FindSpiThatCannotBeRead) {
    received_carousels given = one_carousel({service_information(2)});
    given.unreadable = {"the SPI of service C221 is under access control"};
    EXPECT_EQ(codes_in(given), "spi-unreadable");
}

TEST(CarouselFindings, FindAMissingClock) {
    received_carousels given = one_carousel({service_information(2)});
    given.has_clock = false;
    EXPECT_EQ(codes_in(given), "clock-missing");
    given.frames = 2 * kSecond;  // too short to tell
    EXPECT_EQ(codes_in(given), "");
}

// An image under `name`, announced as `announced`.
history with_image(const std::string& announced, const std::string& name) {
    history past;
    past.objects.emplace_back();
    past.objects[0].content_name = name;
    announcement said{};
    said.content_name = announced;
    past.announcements.push_back(said);
    past.images.push_back({7, 0});
    return past;
}

TEST(CarouselFindings, FindNamesThatDifferByCaseOrCharacterSet) {
    const received_carousels given = one_carousel({service_information(2)});
    EXPECT_EQ(codes_in(given, with_image("http://a/Logo.png", "http://a/logo.PNG")), "name-case-differs");
    EXPECT_EQ(codes_in(given, with_image("caf\xC3\xA9.png", "caf\xC3\x83\xC2\xA9.png")), "name-case-differs");
    EXPECT_EQ(codes_in(given, with_image("logo.png", "logo.png")), "");
    EXPECT_EQ(codes_in(given, with_image("logo.png", "other.png")), "");
}

TEST(CarouselFindings, FindAClockThatIsADayOff) {
    constexpr long kMinutes = 1440;
    constexpr long kToday = 61101;
    const received_carousels given = one_carousel({service_information(2)});
    history past;
    past.clock.push_back({1, kToday * kMinutes + 600});
    programme_arrival programme{};
    programme.time.mjd = 1;  // it has a time
    programme.start = (kToday + 1) * kMinutes + 600;
    past.programmes.push_back(programme);
    EXPECT_EQ(codes_in(given, past), "clock-day-off");
    programme.start = kToday * kMinutes;
    past.programmes.push_back(programme);
    EXPECT_EQ(codes_in(given, past), "");
}

// From the multiplex's own bytes to the calls that are checked.
TEST(ReceivedInput, NamesFrameAndTimeOfDayAndLeavesRepetitionsOut) {
    kit::object sent_object;
    sent_object.name = "an object";
    sent_object.body = kit::bytes(50, 1);
    std::vector<kit::bytes> groups;
    for (unsigned i = 0; i < 20; ++i)
        kit::append(groups, kit::directory_round(9, {sent_object}));
    on_air::multiplex sent;
    sent.spi.emplace_back();
    sent.sub_channels.push_back({30, 48, on_air::stream_of(5, groups), false});
    const mb::bytes file = mb::raw_eti(on_air::frames_of(sent, 150));
    air::opened_frames in = air::open_frames(std::make_unique<air::memory_source>(file), "a.eti");
    const checked_input got = receive(in, "a.eti", {});
    EXPECT_EQ(got.errors, std::vector<std::string>{});
    ASSERT_EQ(got.calls.calls.size(), 5U);  // service, clock, the object three times
    EXPECT_EQ(got.calls.calls[4].line, 5U);
    EXPECT_EQ(got.location(2).substr(0, 12), "a.eti, frame");
    EXPECT_NE(got.location(5).find(", 2026-03-02 10:30"), std::string::npos) << got.location(5);
    ASSERT_NE(got.air, nullptr);
    EXPECT_EQ(got.air->carousels.size(), 1U);
    EXPECT_EQ(got.air->carousels[0].carousel.objects.at(0).times.count, 20U);
}

}  // namespace

#include "tools/air/fic/fic_decoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "testkit/multiplex/damage.h"
#include "tests/tools/air/fic/fed.h"
#include "tools/air/fic/protection.h"

namespace {

namespace mb = multiplex_builder;
using air_tests::fic_feeder;
using dabspi::air::described_service;
using dabspi::air::ensemble;

constexpr std::uint32_t kAudio = 0xC221;
constexpr std::uint32_t kData = 0xE1C00098;

mb::fig_flags next_configuration() {
    mb::fig_flags flags;
    flags.next = true;
    return flags;
}

std::vector<mb::bytes> whole_ensemble() {
    return {mb::fig_0_0(0xC185, 100),
            mb::fig_0_1_short(3, 0, 35),
            mb::fig_0_1_long(30, 84, 0, 2, 48),
            mb::fig_0_2(kAudio, {{0, 3, true, false, 63}}),
            mb::fig_0_2(kData, {{3, 7}}),
            mb::fig_0_3(7, 30, 5),
            mb::fig_0_8(kData, 0, true, 7),
            mb::fig_0_9(2, 0xE1),
            mb::fig_0_10(mb::day_number(2026, 3, 10), 7, 30),
            mb::fig_0_13(kData, 0, {{7, {0x01}}}),
            mb::fig_0_14(30, 1),
            mb::ensemble_label(0xC185, "Test ensemble"),
            mb::service_label(kAudio, "Radio 4"),
            mb::service_label(kData, "Guide")};
}

void expect_whole(const fic_feeder& of) {
    const ensemble got = of.described();
    EXPECT_EQ(got.eid, 0xC185);
    EXPECT_EQ(got.ecc, 0xE1);
    EXPECT_EQ(got.label, "Test ensemble");
    EXPECT_EQ(got.offset_half_hours, 2);
    ASSERT_EQ(got.services.size(), 2U);
    EXPECT_EQ(got.services[0].sid, kAudio);
    EXPECT_EQ(got.services[0].label, "Radio 4");
    EXPECT_FALSE(got.services[0].long_id);
    ASSERT_EQ(got.services[0].components.size(), 1U);
    EXPECT_EQ(got.services[0].components[0].sub_channel, 3);
    EXPECT_EQ(got.services[0].components[0].organisation.type, 63);
    EXPECT_EQ(got.services[1].label, "Guide");
    EXPECT_TRUE(got.services[1].long_id);
    ASSERT_EQ(got.sub_channels.size(), 2U);
    EXPECT_EQ(got.sub_channels[0].organisation.bit_rate, 128);
    EXPECT_EQ(protection_text(got.sub_channels[0].organisation), "UEP 3");
    EXPECT_EQ(got.sub_channels[1].organisation.bit_rate, 64);
    EXPECT_EQ(protection_text(got.sub_channels[1].organisation), "EEP 3-A");
    ASSERT_EQ(of.spi().size(), 1U);
    const dabspi::air::spi_component spi = of.spi()[0];
    EXPECT_EQ(spi.sid, kData);
    EXPECT_EQ(spi.scids, 0);
    EXPECT_EQ(spi.sub_channel, 30);
    EXPECT_EQ(spi.address, 5);
    EXPECT_EQ(spi.fec_scheme, 1);
    EXPECT_EQ(spi.bit_rate, 64);
    EXPECT_EQ(spi.application_data, mb::bytes{0x01});
}

TEST(FicDecoder, DescribesTheEnsemble) {
    fic_feeder feed;
    feed(whole_ensemble());
    expect_whole(feed);
    EXPECT_EQ(feed.minutes, std::vector<std::string>{"2026-03-10 08:30"});
}

TEST(FicDecoder, TakesFigsInAnyOrder) {
    std::mt19937 random(1);
    for (int times = 0; times < 50; ++times) {
        auto figs = whole_ensemble();
        std::shuffle(figs.begin(), figs.end(), random);
        figs.push_back(mb::ensemble_label(0xC185, "Test ensemble"));  // repeated, as everything is
        fic_feeder feed;
        feed(figs);
        expect_whole(feed);
    }
}

TEST(FicDecoder, ChangesNothingByRepetition) {
    fic_feeder feed;
    feed(whole_ensemble());
    feed(whole_ensemble());
    feed.changed = false;
    for (int times = 0; times < 10; ++times)
        feed(whole_ensemble());
    EXPECT_FALSE(feed.changed);
    EXPECT_EQ(feed.minutes.size(), 1U);
}

TEST(FicDecoder, DropsFibsWithAWrongCrc) {
    mb::bytes all = mb::fibs({mb::fig_0_0(0xC185, 0), mb::ensemble_label(0xC185, "Test")});
    all[10] ^= 1;
    dabspi::air::frame each;
    each.fic = all;
    dabspi::air::fic_decoder decoder;
    decoder.feed(each);
    EXPECT_FALSE(decoder.describe().eid);
    EXPECT_EQ(decoder.statistics().fibs_crc_wrong, 1U);
}

TEST(FicDecoder, SkipsUnknownAndMalformedFigs) {
    fic_feeder feed;
    feed({mb::fig(6, {1, 2, 3}), mb::fig(0, {}), mb::fig_0(25, {1, 2}), mb::fig_0(1, {0x0C}),
          mb::fig_0(2, {0xC2, 0x21, 3, 0}), mb::fig(1, {0x00, 0xC1, 0x85, 'x'}), mb::fig_0(9, {0}),
          mb::fig_0(10, {1, 2, 3})});
    feed(whole_ensemble());
    expect_whole(feed);
    EXPECT_EQ(feed.decoder.statistics().figs_malformed, 6U);
    EXPECT_EQ(feed.decoder.statistics().figs_not_needed, 2U);
}

TEST(FicDecoder, IgnoresOtherEnsembles) {
    mb::fig_flags others;
    others.others = true;
    fic_feeder feed;
    feed(whole_ensemble());
    feed({mb::fig_0_2(0xD318, {{0, 5}}, others), mb::fig_0_14(30, 0, others)});
    expect_whole(feed);
}

TEST(FicDecoder, ReadsLabelsInEveryCharacterSet) {
    fic_feeder feed;
    feed(whole_ensemble());
    feed({mb::service_label(kAudio,
                            "R\x82"
                            "dio \x99",
                            0, ' '),
          mb::service_label(kData, std::string("\0G\x01\x7D\0i\0d", 8), 6),
          mb::component_label(kData, 0,
                              "Gu\xC3\xAD"
                              "a",
                              15)});
    const ensemble got = feed.described();
    EXPECT_EQ(got.services[0].label,
              "R\xC3\xA9"
              "dio \xC3\xBC");
    EXPECT_EQ(got.services[1].label,
              "G\xC5\xBD"
              "id");
    EXPECT_EQ(got.services[1].components[0].label,
              "Gu\xC3\xAD"
              "a");
}

TEST(FicDecoder, LabelsAreAlwaysWellFormed) {
    fic_feeder feed;
    feed(whole_ensemble());
    feed({mb::service_label(kAudio, "\xFF\xC3\n\x1B[1m", 15),
          mb::service_label(kData, std::string("\xD8\0\0A", 4), 6)});
    const ensemble got = feed.described();
    EXPECT_EQ(got.services[0].label, "\xEF\xBF\xBD\xEF\xBF\xBD[1m");
    EXPECT_EQ(got.services[1].label,
              "\xEF\xBF\xBD"
              "A");
}

TEST(FicDecoder, FollowsAComponentThatMovesWithoutAnnouncement) {
    fic_feeder feed;
    feed(whole_ensemble());
    feed.changed = false;
    feed({mb::fig_0_3(7, 31, 9), mb::fig_0_1_long(31, 200, 1, 0, 27)});
    EXPECT_TRUE(feed.changed);
    ASSERT_EQ(feed.spi().size(), 1U);
    EXPECT_EQ(feed.spi()[0].sub_channel, 31);
    EXPECT_EQ(feed.spi()[0].address, 9);
    EXPECT_EQ(feed.spi()[0].bit_rate, 32);
    EXPECT_EQ(feed.spi()[0].fec_scheme, 0);
}

TEST(FicDecoder, TheNextConfigurationTakesEffectAtItsMoment) {
    fic_feeder feed;
    feed(whole_ensemble());
    const auto next = next_configuration();
    const std::vector<mb::bytes> announced = {
        mb::fig_0_1_long(31, 0, 0, 2, 24, next), mb::fig_0_2(kData, {{3, 8}}, next),
        mb::fig_0_3(8, 31, 6, 60, true, std::nullopt, next), mb::fig_0_14(31, 0, next)};
    for (unsigned count = 110; count < 130; ++count) {
        feed({mb::fig_0_0(0xC185, count, 3, 130)});
        feed(announced);
        expect_whole(feed);
    }
    feed({mb::fig_0_0(0xC185, 130)});
    ASSERT_EQ(feed.spi().size(), 1U);
    EXPECT_EQ(feed.spi()[0].sub_channel, 31);
    EXPECT_EQ(feed.spi()[0].address, 6);
    EXPECT_EQ(feed.described().services.size(), 1U) << "the other one is no longer there";
    EXPECT_EQ(feed.decoder.statistics().reconfigurations, 1U);
}

TEST(FicDecoder, AReconfigurationIsFollowedWhenItsMomentIsLost) {
    fic_feeder feed;
    feed(whole_ensemble());
    feed({mb::fig_0_0(0xC185, 110, 3, 130),
          mb::fig_0_3(7, 12, 3, 60, true, std::nullopt, next_configuration())});
    feed({mb::fig_0_0(0xC185, 150)});
    ASSERT_EQ(feed.spi().size(), 1U);
    EXPECT_EQ(feed.spi()[0].sub_channel, 12);
}

TEST(FicDecoder, AnotherEnsembleBeginsAnew) {
    fic_feeder feed;
    feed(whole_ensemble());
    feed({mb::fig_0_0(0xD001, 7)});
    EXPECT_EQ(feed.described().eid, 0xD001);
    EXPECT_TRUE(feed.described().services.empty());
    EXPECT_TRUE(feed.described().label.empty());
    feed(whole_ensemble());
    expect_whole(feed);
    EXPECT_EQ(feed.decoder.statistics().changes_of_ensemble, 2U);
}

TEST(FicDecoder, ServicesWithoutEndAreCountedAndNotKept) {
    fic_feeder feed;
    for (std::uint32_t i = 0; i < 2000; ++i)
        feed({mb::fig_0_2(0xE0000000 + i, {{3, i % 4096}})});
    EXPECT_EQ(feed.described().services.size(), dabspi::air::kMostServices);
    EXPECT_EQ(feed.decoder.statistics().figs_over_limit, 2000 - dabspi::air::kMostServices);
}

TEST(FicDecoder, AnyBytesAreLegal) {
    std::mt19937 random(11);
    dabspi::air::fic_decoder decoder;
    for (int times = 0; times < 20000; ++times) {
        mb::bytes block(30);
        for (auto& byte : block)
            byte = static_cast<std::uint8_t>(random() % 4 == 0 ? random() : random() % 32);
        const mb::bytes fib = mb::with_crc16(block);
        dabspi::air::frame each;
        each.fic = fib;
        decoder.feed(each);
    }
    EXPECT_EQ(decoder.statistics().fibs, 20000U);
    decoder.describe();
}

TEST(FicDecoder, ACutFicIsCounted) {
    const mb::bytes all = mb::fibs(whole_ensemble());
    for (std::size_t size = 0; size < 96; ++size) {
        dabspi::air::fic_decoder decoder;
        dabspi::air::frame each;
        each.fic = dabspi::air::byte_view(all).part(0, size);
        decoder.feed(each);
        EXPECT_EQ(decoder.statistics().fibs, size / 32);
        EXPECT_EQ(decoder.statistics().fibs_cut, size % 32 == 0 ? 0U : 1U);
    }
}

}  // namespace

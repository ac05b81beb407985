// The FIC, read back, and its FIGs against those of a builder that shares no line with what wrote them.
#include "tools/transmit/fic/fic_writer.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "testkit/multiplex/fic_builder.h"
#include "tools/air/fic/fic_decoder.h"
#include "tools/transmit/fic/label.h"

namespace {

namespace mb = multiplex_builder;
namespace air = dabspi::air;
using namespace dabspi::transmit;

constexpr std::int64_t kDay = 86'400'000;

announced_ensemble ensemble_of(std::size_t services) {
    announced_ensemble made;
    made.ecc = 0xE1;
    made.eid = 0xC185;
    made.label = "Ensemble";
    made.offset_half_hours = -3;
    for (std::size_t i = 0; i < services; ++i)
        made.services.push_back({static_cast<std::uint16_t>(0xC221 + i), "Zwölf " + std::to_string(i)});
    made.spi = {1, 0, 16};
    made.sound = {2, 12, 8};
    made.spi_sid = 0xE1C00098;
    made.spi_label = "Programme guide";
    made.spi_address = 5;
    made.spi_fec = true;
    return made;
}

struct read_fic {
    air::fic_decoder decoder;
    std::vector<mb::bytes> figs;

    read_fic(const announced_ensemble& of, unsigned frames, std::int64_t begin) {
        fic_writer writer(of);
        for (unsigned i = 0; i < frames; ++i) {
            std::uint8_t fic[kFicBytes];
            writer.write(i, begin + i * 24, fic);
            air::frame frame;
            frame.index = frame.count = static_cast<std::uint16_t>(i);
            frame.fic = {fic, kFicBytes};
            decoder.feed(frame);
            for (std::size_t at = 0; at < kFicBytes; at += 32)
                for (std::size_t f = at; f < at + 30 && fic[f] != 0xFF; f += 1 + (fic[f] & 0x1F))
                    figs.emplace_back(fic + f, fic + f + 1 + (fic[f] & 0x1F));
        }
    }
    bool has(const mb::bytes& fig) const { return std::find(figs.begin(), figs.end(), fig) != figs.end(); }
};

TEST(FicWriter, AnnouncesTheSpiService) {
    const read_fic got(ensemble_of(3), 20, 60000 * kDay);
    EXPECT_EQ(got.decoder.statistics().fibs_crc_wrong, 0U);
    EXPECT_EQ(got.decoder.statistics().figs_malformed, 0U);
    const auto spi = air::spi_components(got.decoder.describe());
    ASSERT_EQ(spi.size(), 1U);
    EXPECT_EQ(spi[0].sid, 0xE1C00098U);
    EXPECT_EQ(spi[0].label, "Programme guide");
    EXPECT_EQ(spi[0].sub_channel, 1);
    EXPECT_EQ(spi[0].address, 5);
    EXPECT_EQ(spi[0].fec_scheme, 1);
    EXPECT_EQ(spi[0].bit_rate, 16);
    EXPECT_EQ(spi[0].application_data, (std::vector<std::uint8_t>{0x01}));
}

TEST(FicWriter, AnnouncesEveryServiceWithItsLabel) {
    for (const std::size_t services : {0U, 1U, 5U, 6U, 51U}) {
        const read_fic got(ensemble_of(services), 40, 60000 * kDay);
        const air::ensemble ensemble = got.decoder.describe();
        EXPECT_EQ(ensemble.label, "Ensemble");
        EXPECT_EQ(ensemble.ecc, 0xE1);
        EXPECT_EQ(ensemble.offset_half_hours, -3);
        ASSERT_EQ(ensemble.services.size(), services + 1);
        for (std::size_t i = 0; i < services; ++i) {
            EXPECT_EQ(ensemble.services[i].label, "Zwölf " + std::to_string(i));
            ASSERT_EQ(ensemble.services[i].components.size(), 1U);
            EXPECT_EQ(ensemble.services[i].components[0].sub_channel, 2);
        }
    }
}

TEST(FicWriter, WritesFigsAsTheStandardHasThem) {
    const read_fic got(ensemble_of(2), 10, 60000 * kDay + 45296789);
    for (const mb::bytes& each :
         {mb::fig_0_0(0xC185, 0), mb::fig_0_0(0xC185, 9), mb::fig_0_2(0xE1C00098, {{3, 1}}),
          mb::fig_0_3(1, 1, 5), mb::fig_0_8(0xE1C00098, 0, true, 1), mb::fig_0_9(-3, 0xE1),
          mb::fig_0_10(60000, 12, 34, 56789), mb::fig_0_13(0xE1C00098, 0, {{7, {0x01}}}), mb::fig_0_14(1, 1),
          mb::ensemble_label(0xC185, "Ensemble"), mb::service_label(0xE1C00098, "Programme guide")})
        EXPECT_TRUE(got.has(each)) << int{each[1]};
}

TEST(FicWriter, TheClockGoesOn) {
    const read_fic got(ensemble_of(2), 3000, 60000 * kDay + 86'399'000);
    const auto now = got.decoder.clock().now();
    ASSERT_TRUE(now.has_value());
    EXPECT_EQ(air::minute_text(*now), "2023-02-25 22:31");
    // Across the number of frames that the count of frames comes round.
    EXPECT_TRUE(got.has(mb::fig_0_0(0xC185, 2999)));
}

TEST(Label, IsEbuLatinWhereThatWillDo) {
    EXPECT_EQ(label_of("Zwölf").charset, 0);
    EXPECT_EQ(label_of("Zwölf").characters[2], 0x97);
    EXPECT_EQ(label_of("Zwölf").flags, 0xF800);
    EXPECT_EQ(label_of("A label of more than 16").characters.size(), 16U);
    EXPECT_EQ(label_of("A label of more than 16").flags, 0xFF00);
    const label_field snow = label_of("Радио Снежинка");
    EXPECT_EQ(snow.charset, 15);
    EXPECT_EQ(std::string(snow.characters.begin(), snow.characters.end()), std::string("Радио Сн") + '\0');
}

}  // namespace

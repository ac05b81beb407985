// What is on air in these tests: two stations of one ensemble, on 2 and 3 March 2026.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "testkit/spi_builder_objects.h"

namespace on_air {

constexpr std::uint16_t kEnsemble = 0xCE15;
constexpr std::uint16_t kOtherEnsemble = 0xCE16;
constexpr std::uint8_t kEcc = 0xE1;
constexpr std::uint32_t kStation = 0xC221;
constexpr std::uint32_t kBlockedStation = 0xC223;
// The data service that carries the objects: the wrapper takes the ECC from its top eight bits.
constexpr std::uint32_t kDataService = 0xE1C00221;

// A PNG of one grey pixel: 67 bytes.
inline const spi_builder::bytes& png() {
    static const spi_builder::bytes image = {
        0x89, 'P',  'N',  'G',  0x0D, 0x0A, 0x1A, 0x0A, 0x00, 0x00, 0x00, 0x0D, 'I',  'H',  'D',  'R',  0x00,
        0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x01, 0x08, 0x00, 0x00, 0x00, 0x00, 0x3A, 0x7E, 0x9B, 0x55, 0x00,
        0x00, 0x00, 0x0A, 'I',  'D',  'A',  'T',  0x78, 0xDA, 0x63, 0x68, 0x00, 0x00, 0x00, 0x82, 0x00, 0x81,
        0xDA, 0x45, 0x08, 0x3B, 0x00, 0x00, 0x00, 0x00, 'I',  'E',  'N',  'D',  0xAE, 0x42, 0x60, 0x82};
    return image;
}
inline std::string png_text() {
    return {png().begin(), png().end()};
}

inline spi_builder::service_id id_of(std::uint32_t sid) {
    return {kEcc, kEnsemble, sid, 0};
}

// Announces `content_name` as a logo of the station, 320 x 240 or 128 x 128.
inline spi_builder::service_data station(std::uint32_t sid, const std::string& name,
                                         const std::vector<spi_builder::logo_data>& logos) {
    return {{"", name, ""}, {id_of(sid)}, logos};
}
inline spi_builder::logo_data small_logo(const std::string& content_name) {
    return {"image/png", content_name, {}, 128, 128};
}
inline spi_builder::logo_data large_logo(const std::string& content_name) {
    return {"image/png", content_name, {}, 320, 240};
}

inline spi_builder::bytes description() {
    return spi_builder::si_object(
        kEcc, kEnsemble,
        {station(kStation, "Radio 4", {small_logo("small.png"), large_logo("large.png")}),
         station(kBlockedStation, "Radio 5", {small_logo("blocked.png")})});
}

inline spi_builder::bytes schedule(unsigned day, const std::vector<spi_builder::programme_data>& programmes,
                                   std::uint32_t sid = kStation) {
    const std::uint32_t mjd = spi_builder::mjd(2026, 3, day);
    return spi_builder::pi_object(
        {{id_of(sid), spi_builder::utc_time{mjd, 0, 0}, spi_builder::utc_time{mjd + 1, 0, 0}, programmes}});
}
inline spi_builder::bytes today() {
    const std::uint32_t day = spi_builder::mjd(2026, 3, 2);
    return schedule(2, {{{"", "Morning", ""}, {day, 10, 0}, 3600}, {{"", "Noon", ""}, {day, 11, 0}, 3600}});
}
inline spi_builder::bytes tomorrow() {
    return schedule(3, {{{"", "Dawn", ""}, {spi_builder::mjd(2026, 3, 3), 6, 0}, 7200}});
}

}  // namespace on_air

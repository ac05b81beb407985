#include "src/logo_db/logo_rules.h"

#include "src/parse/hexadecimal.h"
#include "src/parse/mot_content.h"

namespace spi {

logo_refusal refusal_of_station(const ServElemId& station) {
    if (station.sid == 0 || station.ecc == 0) return logo_refusal::no_station;
    return station.sid < kFirst32BitSid ? logo_refusal::none : logo_refusal::long_service_id;
}

logo_refusal refusal_of_format(std::uint8_t image_format) {
    return image_format == LOGO_FORMAT_PNG ? logo_refusal::none : logo_refusal::format;
}

logo_refusal refusal_of_size(std::uint8_t size_code) {
    return size_code == LOGO_SIZE_128x128 || size_code == LOGO_SIZE_320x240 ? logo_refusal::none
                                                                            : logo_refusal::size_code;
}

logo_refusal refusal_of_logo(const SpiLogoInfo& logo, std::uint32_t body_size) {
    for (const logo_refusal why : {refusal_of_station(logo.service), refusal_of_format(logo.image_format),
                                   refusal_of_size(logo.size_code)})
        if (why != logo_refusal::none) return why;
    if (body_size > kLargestLogo) return logo_refusal::too_large;
    return logo.name.empty() ? logo_refusal::no_name : logo_refusal::none;
}

bool gives_way_to_larger(const SpiLogoInfo& logo) {
    return logo.size_code == LOGO_SIZE_128x128;
}

std::string station_prefix(int ecc, int sid, int scids) {
    return hexadecimal((static_cast<unsigned>(ecc) & 0xFF) << 20 |
                       (static_cast<unsigned>(sid) & 0xFFFF) << 4 | (static_cast<unsigned>(scids) & 0xF));
}

std::string larger_logo_name(int ecc, int sid, int scids) {
    return station_prefix(ecc, sid, scids) + "_" + hexadecimal(LOGO_SIZE_320x240) + ".";
}

bool is_logo_image(const MotBodyMetadata& metadata) {
    return metadata.user_application_type == kSpiApplication && metadata.content_type == kMotImage &&
           (metadata.content_subtype == kMotJfif || metadata.content_subtype == kMotPng);
}

}  // namespace spi

// What the logo store decides, apart from its worker and the disk: which images it takes, which announcement
// they use up, and whether and why a logo is not written. Pure: the caller has the announcements, or what
// stands for them.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "src/parse/mot_body.h"
#include "src/parse/serv_elem_id.h"
#include "src/parse/spi_logo_info.h"

namespace spi {

// Larger images are neither written nor cleaned up after.
constexpr std::uint32_t kLargestLogo = 22528;  // bytes

constexpr std::uint32_t kFirst32BitSid = 0x10000;

// Why a logo is not written, in the order in which it is found.
enum class logo_refusal : std::uint8_t {
    none,
    no_station,       // service identifier or ECC is 0
    long_service_id,  // of 32 bits
    format,           // not PNG: JPEG logos are announced but deliberately never written
    size_code,        // neither 128 x 128 nor 320 x 240
    too_large,        // more than kLargestLogo
    no_name,          // no file name
    larger_there      // a 128 x 128 logo whose station has a 320 x 240 file
};

// Each of its own part of an announcement: these do not depend on the image.
logo_refusal refusal_of_station(const ServElemId& station);
logo_refusal refusal_of_format(std::uint8_t image_format);
logo_refusal refusal_of_size(std::uint8_t size_code);

// All that can be said without looking at the disk: never larger_there. `logo` has its file name.
logo_refusal refusal_of_logo(const SpiLogoInfo& logo, std::uint32_t body_size);

// True for a logo that is not written once its station has a file that matches larger_logo_name.
bool gives_way_to_larger(const SpiLogoInfo& logo);

// How the searches in the logo root name a station: ECC, service identifier and SCIdS packed into one number
// (of which 8, 16 and 4 bits take part), in upper-case hexadecimal.
std::string station_prefix(int ecc, int sid, int scids);
// What the names of a station's 320 x 240 logos begin with, of whatever format.
std::string larger_logo_name(int ecc, int sid, int scids);

// An image of an SPI service: user application type 7, ContentType 2, ContentSubType 1 (JFIF) or 3 (PNG).
bool is_logo_image(const MotBodyMetadata& metadata);

// What was announced, by the service that the description came with and by content name. Equal names may
// occur several times, and keep their order: a multimap in effect. Ordered, both of them: a broadcast chooses
// identifiers and names, and could give them all one hash value or one bucket.
template <class Item>
using announcement_table = std::map<ServElemId, std::map<std::string, std::vector<Item>>>;

// What an image uses up: every announcement of its name, whatever becomes of each. Nothing for a service
// without announcements: an image that comes before its announcement is lost.
template <class Item>
std::optional<std::vector<Item>> use_up(announcement_table<Item>& announced, const ServElemId& service,
                                        const std::string& content_name) {
    const auto known = announced.find(service);
    if (known == announced.end() || known->second.empty()) return std::nullopt;
    auto found = known->second.extract(content_name);
    return found.empty() ? std::vector<Item>() : std::move(found.mapped());
}

}  // namespace spi

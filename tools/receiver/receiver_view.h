// What a receiver takes from one object: what the library's own parsers tell of it, with the place of each
// programme and service in the bytes and, for a programme that is dropped silently, why.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "src/parse/body/spi_body_listener.h"
#include "src/parse/pi_schedule_programme.h"
#include "src/parse/si_service_info.h"
#include "tools/spi/byte_view.h"
#include "tools/spi/tree.h"

namespace dabspi::spi_object {

struct taken_programme {
    std::uint32_t offset;  // of the programme element
    spi::PiScheduleProgramme programme;
    spi::ServElemId service;                 // chosen for it; only where it is not dropped
    std::optional<spi::no_service> dropped;  // and why
};

struct taken_service {
    std::uint32_t offset;  // of the service element
    spi::SiServiceInfo info;
    std::vector<std::uint32_t> logo_offsets;  // of the multimedia elements, one for each of info.logos
};

struct receiver_view {
    bool read = false;           // false: the sub-type is none that is read
    std::uint16_t ensemble = 0;  // that the receiver was on
    std::vector<taken_programme> programmes;
    std::vector<taken_service> services;
    std::size_t more = 0;  // programmes and services beyond the first 20,000, which a crafted object can have
};

// `subtype`: MOT ContentSubType, 0 or 1 are read. `ensemble`: identifiers on others are not accepted in
// programme information; 0 is a receiver that does not know its ensemble.
receiver_view take(byte_view body, std::uint16_t subtype, std::uint16_t ensemble);

// The ensemble of the first content ID that a receiver would look at: the one on which the object is at home.
std::optional<std::uint16_t> home_ensemble(const object& of);

// The sub-type that an object has by its own top element.
std::uint16_t natural_subtype(const object& of);

}  // namespace dabspi::spi_object

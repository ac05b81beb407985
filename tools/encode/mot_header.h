// The MOT header (ETSI EN 301 234, TS 102 371) that an SPI object is broadcast with: names and parameters
// made from what the object itself says.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/spi/tree.h"

namespace dabspi {

struct mot_parameter {
    std::uint8_t id;  // 0x0C
    const char* name;
    std::string value;  // in words: a name, a time, a URI
};

struct mot_header {
    std::uint8_t content_type = 7;
    std::uint16_t content_subtype = 0;  // 0 service, 1 programme, 2 group information
    std::string content_name;
    // Of programme information its scope; ContentName itself is not repeated here.
    std::optional<spi_object::time_value> scope_start;
    std::optional<spi_object::time_value> scope_end;
    std::string scope_id;  // "dab:ce1.c185.c221.0", "e1.ce15"; empty: none

    // Those that are set, ContentName included, in the order of their numbers.
    std::vector<mot_parameter> parameters() const;
};

// Content names:
//   w20260302dC221.EHB    programme information: the day and the SId; "c1" behind it for SCIdS 1
//   w20260302dCE15.EHS    service information: the day of its creationTime (if it has one) and the EId
//   w20260302.EHG         group information: the day of its creationTime
// The day of a schedule is that in the middle of its scope: schedules often begin the evening before. A scope
// of more than two days, and programmes without scope, go by where they begin.
mot_header header_of(const spi_object::object& of);

}  // namespace dabspi

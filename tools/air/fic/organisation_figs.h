// Reads the FIGs of type 0 that organise a multiplex into a configuration: 0/1, 0/2, 0/3, 0/8, 0/13, 0/14.
#pragma once

#include <cstdint>

#include "tools/air/fic/configuration.h"
#include "tools/spi/byte_view.h"

namespace dabspi::air {

using spi_object::byte_view;

enum class fig_problem { none, malformed, over_limit, not_needed };

struct fig_reading {
    bool changed = false;  // also where there is a problem: whole fields in front of a malformed one count
    fig_problem problem = fig_problem::none;
};

// `fields` follow the byte of flags and extension; `long_id` is its P/D flag.
fig_reading read_organisation(std::uint8_t extension, bool long_id, byte_view fields, configuration& to);

}  // namespace dabspi::air

// Parameters of MOT headers and directories (EN 301 234, 6.2), and the times in them (6.2.2). Pure functions,
// any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "tools/spi/byte_view.h"

namespace dabspi::air {

using spi_object::byte_view;

// Its value is a part of the bytes that were read.
struct mot_parameter {
    std::uint8_t id = 0;  // 0..63
    byte_view value;
};

// Takes the first parameter off `from`. Nothing when there is none, or it reaches beyond the end: then `from`
// stays as it is.
std::optional<mot_parameter> take_parameter(byte_view& from);

// Those in front of the first that reaches beyond the end.
std::vector<mot_parameter> parameters_of(byte_view all);

// UTC.
struct mot_time {
    bool now = false;  // no time is given: at once
    std::uint32_t mjd = 0;
    unsigned hour = 0;
    unsigned minute = 0;
    unsigned second = 0;
    unsigned millisecond = 0;
};

// Of four bytes, or of six where `from` has as many and says so; nothing for fewer than four.
std::optional<mot_time> read_mot_time(byte_view from);

}  // namespace dabspi::air

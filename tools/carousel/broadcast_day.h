// Minutes of the broadcast's clock. Plain values and pure functions.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tools/spi/values.h"

namespace dabspi::carousel {

using spi_object::kMinutesOfDay;

// Local time: minutes since 1858-11-17.
struct broadcast_minute {
    std::int64_t number = 0;

    long day() const { return static_cast<long>(number / kMinutesOfDay); }  // MJD
    std::string date() const;                                               // "20260302"
    std::string time() const;                                               // "0600"
};

// "2026-03-02T06:00", or the date alone for midnight. Nothing for another text.
std::optional<broadcast_minute> parse_minute(const std::string& text);

// Seconds since 1970-01-01T00:00 of the same clock.
std::int64_t unix_seconds(const broadcast_minute& of);

// The day of "20260302".
std::optional<long> day_of_date(const std::string& text);

}  // namespace dabspi::carousel

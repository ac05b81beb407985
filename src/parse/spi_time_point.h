// A time as coded in SPI objects (TS 102 371): UTC with a local time offset.
#pragma once

#include <cstdint>

#include "src/parse/mot_date_time.h"

namespace spi {

class spi_parseable;

constexpr int kMinutesPerDay = 1440;

struct SpiTimePoint {
    std::uint32_t mjd = 0;    // Modified Julian Date, 17 bits used; 0 means "never set"
    std::uint8_t hour = 0;    // UTC
    std::uint8_t minute = 0;  // UTC
    std::uint8_t second = 0;  // UTC; 0 unless the long form was coded
    std::int8_t lto = 0;      // local time offset in half-hours; 0 unless coded

    // Reads a time attribute; bounded by it, missing bytes count as 255. Fields that are not coded keep their
    // values. Always 0.
    int parse(spi_parseable& attr);

    // The local date and time of this point plus `offset_seconds`, cut to whole minutes (a programme's
    // duration gives its end). The point's own seconds are ignored; at most one day is carried.
    MotDateTime local_time(unsigned short offset_seconds) const;
};

}  // namespace spi

// The broadcast's clock (EN 300 401, 8.1.3): UTC of FIG 0/10 and the local time offset of 0/9, which come in
// any order.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tools/spi/byte_view.h"

namespace dabspi::air {

// A minute of local time.
struct local_minute {
    int year = 0;
    unsigned month = 0;
    unsigned day = 0;
    unsigned hour = 0;
    unsigned minute = 0;

    bool operator==(const local_minute& other) const {
        return year == other.year && month == other.month && day == other.day && hour == other.hour &&
               minute == other.minute;
    }
    bool operator!=(const local_minute& other) const { return !(*this == other); }
};

// "2017-03-05 10:24"
std::string minute_text(const local_minute& of);

class broadcast_clock {
 public:
    // Both give false for fields that say no time.
    bool read_time(spi_object::byte_view fields);    // 0/10, behind its byte of flags
    bool read_offset(spi_object::byte_view fields);  // 0/9, likewise

    // Forgets both.
    void reset() { *this = broadcast_clock(); }

    std::optional<int> offset_half_hours() const { return offset_; }
    std::optional<std::uint8_t> ecc() const { return ecc_; }

    // Of the current UTC day: seconds and milliseconds are there with the long form only.
    std::optional<unsigned> milliseconds() const { return milliseconds_; }
    // Nothing before both the time and the offset have come.
    std::optional<local_minute> now() const;

 private:
    std::optional<std::int64_t> minutes_;  // of UTC, since 1858-11-17
    std::optional<unsigned> milliseconds_;
    std::optional<int> offset_;
    std::optional<std::uint8_t> ecc_;
};

}  // namespace dabspi::air

// A wall-clock date and time: the host's clock, and the local time of a programme. No seconds, no time zone.
#pragma once

#include <cstdint>
#include <string>

#include "platform/dabspi_export.h"

namespace spi {

struct DABSPI_EXPORT MotDateTime {
    std::uint16_t year = 0;   // full year, 2016; 0 means "never set"
    std::uint8_t month = 0;   // 1..12
    std::uint8_t day = 0;     // 1..31
    std::uint8_t hour = 0;    // 0..23
    std::uint8_t minute = 0;  // 0..59

    // Takes over the host's text YYYYMMDD, exactly 8 characters. A text of another length changes nothing,
    // silently. Each part is converted by std::stoi: leading blanks and a sign are taken, so "2016 1 7" is a
    // date. A part that is not a number as a whole throws std::invalid_argument("stoi"); parts before it keep
    // their new values. There is no range check: "20161399" gives month 13, day 99.
    void put_date(const std::string& text);
    // The same for HHMM, exactly 4 characters.
    void put_time(const std::string& text);

    std::string date() const;  // YYYY-MM-DD; the year is not padded
    std::string time() const;  // HH:MM
};

// Every field counts.
inline bool operator==(const MotDateTime& a, const MotDateTime& b) {
    return a.year == b.year && a.month == b.month && a.day == b.day && a.hour == b.hour &&
           a.minute == b.minute;
}
// The opposite.
inline bool operator!=(const MotDateTime& a, const MotDateTime& b) {
    return !(a == b);
}

}  // namespace spi

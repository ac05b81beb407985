#include "tools/air/fic/broadcast_clock.h"

#include <cstdio>

namespace dabspi::air {

namespace {

constexpr std::int64_t kMinutesOfDay = 24 * 60;

// The civil date of a day counted from 1858-11-17 (Gregorian): with years that begin on 1 March leap days
// come last.
local_minute date_of(std::int64_t modified_julian_day) {
    constexpr std::int64_t kMarchOfYear0 = 678881;  // days from 0000-03-01
    constexpr std::int64_t kEra = 146097;           // days of 400 years
    const std::int64_t days = modified_julian_day + kMarchOfYear0;
    const std::int64_t era = (days >= 0 ? days : days - (kEra - 1)) / kEra;
    const std::int64_t day_of_era = days - era * kEra;
    const std::int64_t year_of_era =
        (day_of_era - day_of_era / 1460 + day_of_era / 36524 - day_of_era / (kEra - 1)) / 365;
    const std::int64_t day_of_year = day_of_era - (365 * year_of_era + year_of_era / 4 - year_of_era / 100);
    const std::int64_t month = (5 * day_of_year + 2) / 153;
    local_minute result;
    result.day = static_cast<unsigned>(day_of_year - (153 * month + 2) / 5 + 1);
    result.month = static_cast<unsigned>(month < 10 ? month + 3 : month - 9);
    result.year = static_cast<int>(year_of_era + era * 400 + (result.month <= 2 ? 1 : 0));
    return result;
}

}  // namespace

std::string minute_text(const local_minute& of) {
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u %02u:%02u", of.year, of.month, of.day, of.hour,
                  of.minute);
    return text;
}

bool broadcast_clock::read_time(spi_object::byte_view fields) {
    constexpr std::size_t kShort = 4;
    constexpr std::size_t kLong = 6;
    const std::uint32_t field = fields.number(0, 4);
    const bool is_long = (field & 0x800) != 0;
    const unsigned hour = field >> 6 & 0x1F;
    const unsigned minute = field & 0x3F;
    if (fields.size() < (is_long ? kLong : kShort) || hour > 23 || minute > 59) return false;
    minutes_ = std::int64_t{field >> 14 & 0x1FFFF} * kMinutesOfDay + hour * 60 + minute;
    milliseconds_.reset();
    if (is_long) milliseconds_ = (fields.number(4, 2) >> 10) * 1000 + (fields.number(4, 2) & 0x3FF);
    return true;
}

// Sign and magnitude, not two's complement.
bool broadcast_clock::read_offset(spi_object::byte_view fields) {
    if (fields.size() < 3) return false;
    const int magnitude = fields[0] & 0x1F;
    offset_ = (fields[0] & 0x20) != 0 ? -magnitude : magnitude;
    ecc_ = fields[1];
    return true;
}

std::optional<local_minute> broadcast_clock::now() const {
    if (!minutes_ || !offset_) return std::nullopt;
    const std::int64_t local = *minutes_ + *offset_ * 30;
    const std::int64_t day = local >= 0 ? local / kMinutesOfDay : (local + 1) / kMinutesOfDay - 1;
    local_minute result = date_of(day);
    const std::int64_t minute = local - day * kMinutesOfDay;
    result.hour = static_cast<unsigned>(minute / 60);
    result.minute = static_cast<unsigned>(minute % 60);
    return result;
}

}  // namespace dabspi::air

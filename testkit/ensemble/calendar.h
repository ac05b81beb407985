// Days and minutes of the simulated time, counted by the tests' own arithmetic.
#pragma once

#include <cstdint>

#include "src/parse/mot_date_time.h"

namespace soak {

constexpr int kDayMinutes = 1440;

// The date of a Modified Julian Date at a minute of that day.
inline spi::MotDateTime date_time_of(long mjd, int minute) {
    // Eras of 400 years that begin on 1 March, so that the leap day is the last day of its year.
    constexpr long kDaysBefore = 678881;  // from 0000-03-01 to 1858-11-17
    constexpr long kEraDays = 146097;
    const long days = mjd + kDaysBefore;
    const long era = days / kEraDays;
    const long of_era = days % kEraDays;
    const long year_of_era = (of_era - of_era / 1460 + of_era / 36524 - of_era / 146096) / 365;
    const long of_year = of_era - (365 * year_of_era + year_of_era / 4 - year_of_era / 100);
    const long march_based = (5 * of_year + 2) / 153;
    const long day = of_year - (153 * march_based + 2) / 5 + 1;
    const long month = march_based < 10 ? march_based + 3 : march_based - 9;
    const long year = year_of_era + era * 400 + (month <= 2 ? 1 : 0);
    spi::MotDateTime out;
    out.year = static_cast<std::uint16_t>(year);
    out.month = static_cast<std::uint8_t>(month);
    out.day = static_cast<std::uint8_t>(day);
    out.hour = static_cast<std::uint8_t>(minute / 60);
    out.minute = static_cast<std::uint8_t>(minute % 60);
    return out;
}

}  // namespace soak

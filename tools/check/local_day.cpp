#include "tools/check/local_day.h"

#include <cstdio>

namespace dabspi::check {

namespace {

// Days since 1858-11-17 of a day of the Gregorian calendar; a month out of its range carries into the year.
long day_number(long year, long month, long day) {
    year += (month - 1) / 12;
    month = (month - 1) % 12 + 1;
    if (month < 3) {
        --year;
        month += 12;
    }
    return 365 * year + year / 4 - year / 100 + year / 400 + (153 * (month - 3) + 2) / 5 + day - 678882;
}

}  // namespace

long minute_of(const spi::MotDateTime& clock) {
    return day_number(clock.year, clock.month == 0 ? 1 : clock.month, clock.day) * kDayMinutes +
           clock.hour * 60L + clock.minute;
}

spi::MotDateTime date_time_of(long minute) {
    // The library's own conversion: what a receiver would say.
    spi::SpiTimePoint point;
    point.mjd = static_cast<std::uint32_t>(minute / kDayMinutes);
    point.hour = static_cast<std::uint8_t>(minute % kDayMinutes / 60);
    point.minute = static_cast<std::uint8_t>(minute % 60);
    return point.local_time(0);
}

long local_start(const spi::PiScheduleProgramme& programme) {
    return static_cast<long>(programme.time.mjd) * kDayMinutes + programme.time.hour * 60L +
           programme.time.minute + programme.time.lto * 30L;
}

std::string day_text(long day) {
    return date_time_of(day * kDayMinutes).date();
}

std::string clock_text(long minute) {
    char text[16];
    std::snprintf(text, sizeof text, "%02ld:%02ld", minute % kDayMinutes / 60, minute % 60);
    return text;
}

std::string minute_text(long minute) {
    return day_text(minute / kDayMinutes) + " " + clock_text(minute);
}

std::string minutes_text(long minutes) {
    const long hours = minutes / 60;
    const long rest = minutes % 60;
    if (hours == 0) return std::to_string(rest) + " min";
    return std::to_string(hours) + " h" + (rest == 0 ? "" : " " + std::to_string(rest) + " min");
}

}  // namespace dabspi::check

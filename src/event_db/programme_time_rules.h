// When a programme starts and ends, in minutes, and whether a now or next programme is set: shared by the
// rules of filing and the now/next selection.
#pragma once

#include "src/parse/pi_schedule_programme.h"

namespace spi {

// Minutes since midnight of the coded day; negative, or 1440 and more, when the local time offset leaves that
// day (or when an hour beyond 23 was coded).
inline int start_minute(const PiScheduleProgramme& p) {
    return p.time.hour * 60 + p.time.minute + p.time.lto * 30;
}

// The minute of the day in which the programme ends; a programme that ends at midnight ends at 0.
inline int end_minute(const PiScheduleProgramme& p) {
    const int minute = start_minute(p) + p.duration / 60;
    // Mostly within the day, and looked at for every programme of it at every tick: no division there.
    return minute >= 0 && minute < kMinutesPerDay ? minute : minute % kMinutesPerDay;
}

// At its midnight.
inline MotDateTime date_of_day(std::uint32_t mjd) {
    SpiTimePoint midnight;
    midnight.mjd = mjd;
    return midnight.local_time(0);
}

// Runs past midnight, or ends exactly there.
inline bool wraps(const PiScheduleProgramme& p) {
    return end_minute(p) < start_minute(p) % kMinutesPerDay;
}

inline bool is_set(const PiScheduleProgramme& p) {
    return !p.name.empty() && p.time.mjd != 0;
}

// Title and start only: the duration stays visible in an update that carries an empty programme. Deliberate.
inline void clear(PiScheduleProgramme& p) {
    p.name.clear();
    p.time = SpiTimePoint();
}

inline bool same_start(const PiScheduleProgramme& a, const PiScheduleProgramme& b) {
    return start_minute(a) % kMinutesPerDay == start_minute(b) % kMinutesPerDay;
}

}  // namespace spi

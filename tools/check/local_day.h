// Local time as one number: minutes since 1858-11-17 00:00, so that times of different days can be compared
// and subtracted. A broadcast's days have 17 bits, so the number always fits.
#pragma once

#include <string>

#include "src/parse/mot_date_time.h"
#include "src/parse/pi_schedule_programme.h"

namespace dabspi::check {

constexpr long kDayMinutes = 1440;
constexpr long kNoon = 720;
constexpr long kSomeDay = 60000;

// Of a real date; for others the nearest that the calendar makes of it.
long minute_of(const spi::MotDateTime& clock);
spi::MotDateTime date_time_of(long minute);

// The programme's start on the local clock.
long local_start(const spi::PiScheduleProgramme& programme);

std::string day_text(long day);        // "2026-03-10"
std::string clock_text(long minute);   // "07:30"
std::string minute_text(long minute);  // "2026-03-10 07:30"

// "45 min", "1 h 30 min", "2 h"
std::string minutes_text(long minutes);

}  // namespace dabspi::check

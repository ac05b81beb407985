// What the programme database decides, apart from its worker: whether a programme is filed and under which
// minute of which day, and what a new date does to the days. Pure: the caller has the containers, of
// programmes or of whatever stands for them.
#pragma once

#include <cstdint>
#include <map>

#include "src/parse/mot_date_time.h"
#include "src/parse/pi_schedule_programme.h"

namespace spi {

enum class filing : std::uint8_t {
    filed,
    minute_taken,   // by an earlier programme
    without_start,  // day 0
    before_date,    // the host has set no date yet
    other_day       // neither today nor tomorrow
};

struct filing_slot {
    filing decision;         // filed, or why the programme is refused
    std::uint32_t day;       // local day number (MJD)
    std::uint16_t minute;    // the key of the day: a minute of the day, or one that no search reaches
    bool reachable() const;  // by the search for now and next
};

// Where a programme belongs by the host's date (year 0: none yet).
filing_slot slot_of(const PiScheduleProgramme& programme, const MotDateTime& date);

// The first programme for a start minute wins: a repeat, and a changed title too, is not filed.
template <class Item>
filing file_under(std::map<std::uint16_t, Item>& day, std::uint16_t minute, const Item& item) {
    return day.try_emplace(minute, item).second ? filing::filed : filing::minute_taken;
}

enum class clock_change : std::uint8_t { first, same_minute, same_day, new_day };

// What the host's clock does when it moves from `before` (year 0: not set yet) to `now`.
clock_change change_of_clock(const MotDateTime& before, const MotDateTime& now);

// What a new day does to the days of one service: the first goes, whatever day that is. The host's date is
// expected to move on by one day at a time. Deliberate: a date that jumps, or goes back, still retires
// exactly one day.
template <class Days>
void retire_day(Days& days) {
    if (!days.empty()) days.erase(days.begin());
}

}  // namespace spi

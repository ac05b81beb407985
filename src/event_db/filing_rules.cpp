#include "src/event_db/filing_rules.h"

#include "src/event_db/programme_time.h"

namespace spi {
namespace {

bool same_date(const MotDateTime& a, const MotDateTime& b) {
    return a.year == b.year && a.month == b.month && a.day == b.day;
}

std::uint32_t local_day(const PiScheduleProgramme& programme) {
    const int minute = start_minute(programme);
    if (minute < 0) return programme.time.mjd - 1;
    if (minute >= kMinutesPerDay) return programme.time.mjd + 1;
    return programme.time.mjd;
}

// The remainder keeps its sign and wraps: a start 50 minutes before the coded day has key 65486, which sorts
// after every real minute, so that no search reaches it. Deliberate.
std::uint16_t day_key(const PiScheduleProgramme& programme) {
    return static_cast<std::uint16_t>(static_cast<std::int16_t>(start_minute(programme)) % kMinutesPerDay);
}

}  // namespace

bool filing_slot::reachable() const {
    return minute < kMinutesPerDay;
}

filing_slot slot_of(const PiScheduleProgramme& programme, const MotDateTime& date) {
    if (programme.time.mjd == 0) return {filing::without_start, 0, 0};
    if (date.year == 0) return {filing::before_date, 0, 0};
    const std::uint32_t day = local_day(programme);
    const bool today = same_date(date_of_day(day), date);
    if (!today && !same_date(date_of_day(day - 1), date)) return {filing::other_day, 0, 0};
    return {filing::filed, day, day_key(programme)};
}

clock_change change_of_clock(const MotDateTime& before, const MotDateTime& now) {
    if (before.year == 0) return clock_change::first;
    if (!same_date(before, now)) return clock_change::new_day;
    return before.hour == now.hour && before.minute == now.minute ? clock_change::same_minute
                                                                  : clock_change::same_day;
}

}  // namespace spi

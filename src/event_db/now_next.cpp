#include <iterator>
#include <memory>

#include "src/event/payloads.h"
#include "src/event_db/programme_time.h"
#include "src/event_db/spi_event_db.h"

namespace spi {

int SpiEventDb::find_curtt(bool tomorrow) {
    const auto service = schedules_.find(current_service_);
    if (service == schedules_.end() || service->second.empty()) return 1;
    auto day = service->second.begin();
    if (tomorrow && ++day == service->second.end()) return 1;
    if (day->second->empty()) return 1;
    current_timetable_ = day->second;
    return 0;
}

bool SpiEventDb::find_now() {
    if (!current_timetable_) return false;
    const int now_minute = current_time_.hour * 60 + current_time_.minute;
    for (const auto& [start, programme] : *current_timetable_) {
        // Nothing covers the time. The programme before stays, and nothing is told. Deliberate.
        if (start > now_minute) return false;
        const int end = end_minute(programme);
        if (now_minute >= end && end >= start) continue;
        // The first that covers the time is it. The same start minute counts as the same programme, whatever
        // its title and day. Deliberate.
        if (is_set(now_) && same_start(now_, programme)) return false;
        now_ = programme;
        clear(next_);
        return true;
    }
    return false;
}

bool SpiEventDb::find_next() {
    if (!is_set(now_) || !current_timetable_) return false;
    // The search goes on in tomorrow's schedule, for now as well, until a change of date retires today's.
    // Deliberate.
    if (wraps(now_) && find_curtt(true) != 0) return false;
    // Exactly at the minute in which now ends: a gap or an overlap of one minute means that there is no next.
    const auto following = current_timetable_->find(static_cast<std::uint16_t>(end_minute(now_)));
    if (following == current_timetable_->end()) return false;
    if (is_set(next_) && same_start(next_, following->second)) return false;
    next_ = following->second;
    return true;
}

int SpiEventDb::check_send_nownext() {
    if (!current_timetable_ && find_curtt(false) != 0) return 1;
    const bool now_changed = find_now();
    const bool next_changed = find_next();
    if (!now_changed && !next_changed) return 1;
    send_nownext();
    return 0;
}

int SpiEventDb::check_match(const ServElemId& service) {
    if (current_service_.sid == 0 || current_service_.ecc == 0) return 1;
    if (service != current_service_) return 0;
    if (is_set(now_) && is_set(next_)) return 0;
    return check_send_nownext();
}

int SpiEventDb::cfu_service(const ServElemId& service) {
    if (service == current_service_) return 1;
    clear(now_);
    clear(next_);
    current_timetable_.reset();
    current_service_ = service;
    return check_send_nownext();
}

int SpiEventDb::cfu_date_time(const MotDateTime& now) {
    if (current_time_.year != 0) {
        const bool same_day = now.year == current_time_.year && now.month == current_time_.month &&
                              now.day == current_time_.day;
        if (!same_day) {
            remove_tt_today();
        } else if (now.hour == current_time_.hour && now.minute == current_time_.minute) {
            return 0;
        }
    }
    current_time_ = now;
    // The end minute still counts as running here, and no longer in find_now: a change of programme is told
    // one minute after the end. Deliberate.
    if (is_set(now_) && now_.match_tp(now)) return 0;
    return check_send_nownext();
}

void SpiEventDb::send_nownext() {
    results_.send(std::make_shared<nownext_update_event>(now_, next_), QID_CBHDL);
}

}  // namespace spi

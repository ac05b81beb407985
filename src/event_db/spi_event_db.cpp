#include "src/event_db/spi_event_db.h"

#include <utility>

#include "src/event/payloads.h"
#include "src/event_db/filing_rules.h"
#include "src/event_db/programme_time_rules.h"

namespace spi {

SpiEventDb::SpiEventDb() : event_proc(QID_EVTDB, worker_duties{}) {
    begin(*this);
}
SpiEventDb::~SpiEventDb() {
    destroy_proc();
}

// Stopped between two programmes: what is said of the first still leaves.
void SpiEventDb::post() {
    results_.flush();
}

// Programmes come many at a time: what is said of them waits while more follow.
void SpiEventDb::process_event(event& e) {
    outbox::turn turn(results_);
    switch (e.code()) {
        case EC_DATETIME: cfu_date_time(static_cast<const date_time_event&>(*e.payload).now); break;
        case EC_SERV: cfu_service(static_cast<const set_service_event&>(*e.payload).service); break;
        case EC_EVTINFO: {
            const auto& received = static_cast<const pi_programme_event&>(*e.payload);
            handle_programme(received.service, received.programme, e.payload);
            if (follows(EC_EVTINFO)) turn.go_on();
            break;
        }
        case EC_RESEND: send_nownext(); break;  // as they stand, set or not
        case EC_DBCLEAR: clear_db(); break;
        case EC_TERM: event_proc::process_event(e); break;
        default: break;
    }
}

int SpiEventDb::handle_programme(const ServElemId& service, const PiScheduleProgramme& programme,
                                 std::shared_ptr<i_evt_base> as_received) {
    const filing_slot slot = slot_of(programme, current_time_);
    if (slot.decision != filing::filed) return 1;

    auto& days = schedules_[service];
    auto schedule = days.find(slot.day);
    // Allocated before it is inserted: where there is no memory for it, no day without a schedule stays
    // behind.
    if (schedule == days.end()) schedule = days.emplace(slot.day, std::make_shared<DaySchedule>()).first;
    if (file_under(*schedule->second, slot.minute, programme) != filing::filed) return 0;

    if (!as_received) as_received = std::make_shared<pi_programme_event>(service, programme);
    results_.send(std::move(as_received), QID_CBHDL);
    check_match(service);
    return 0;
}

int SpiEventDb::remove_tt_today() {
    for (auto& [service, days] : schedules_)
        retire_day(days);
    find_curtt(false);  // when no day is left the current timetable stays as it was
    return 1;
}

int SpiEventDb::clear_db() {
    clear(now_);
    clear(next_);
    current_timetable_.reset();
    schedules_.clear();
    return 0;
}

void SpiEventDb::dump_db() const {
    for (const auto& [service, days] : schedules_) {
        for (const auto& [day, programmes] : days) {
            const std::string date = date_of_day(day).date();
            static_cast<void>(date);  // deliberately not written anywhere: a place for a breakpoint
        }
    }
}

// ---- now and next ----

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
    switch (change_of_clock(current_time_, now)) {
        case clock_change::new_day: remove_tt_today(); break;
        case clock_change::same_minute: return 0;
        case clock_change::first:
        case clock_change::same_day: break;
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

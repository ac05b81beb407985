#include <cstdint>
#include <utility>

#include "src/event/payloads.h"
#include "src/event_db/programme_time.h"
#include "src/event_db/spi_event_db.h"

namespace spi {
namespace {

bool same_date(const MotDateTime& a, const MotDateTime& b) {
    return a.year == b.year && a.month == b.month && a.day == b.day;
}

MotDateTime date_of_day(std::uint32_t mjd) {
    SpiTimePoint midnight;
    midnight.mjd = mjd;
    return midnight.local_time(0);
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
    const outbox::turn turn(results_, e.code() == EC_EVTINFO && follows(EC_EVTINFO));
    switch (e.code()) {
        case EC_DATETIME: cfu_date_time(static_cast<const date_time_event&>(*e.payload).now); break;
        case EC_SERV: cfu_service(static_cast<const set_service_event&>(*e.payload).service); break;
        case EC_EVTINFO: {
            const auto& received = static_cast<const pi_programme_event&>(*e.payload);
            handle_programme(received.service, received.programme, e.payload);
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
    if (programme.time.mjd == 0 || current_time_.year == 0) return 1;

    const std::uint32_t day = local_day(programme);
    const bool today = same_date(date_of_day(day), current_time_);
    const bool tomorrow = !today && same_date(date_of_day(day - 1), current_time_);
    if (!today && !tomorrow) return 1;

    auto& days = schedules_[service];
    auto schedule = days.find(day);
    // Allocated before it is inserted: where there is no memory for it, no day without a schedule stays
    // behind.
    if (schedule == days.end()) schedule = days.emplace(day, std::make_shared<DaySchedule>()).first;
    // The first programme for a start minute wins: a repeat, and a changed title too, is neither filed nor
    // reported.
    if (!schedule->second->try_emplace(day_key(programme), programme).second) return 0;

    if (!as_received) as_received = std::make_shared<pi_programme_event>(service, programme);
    results_.send(std::move(as_received), QID_CBHDL);
    check_match(service);
    return 0;
}

int SpiEventDb::remove_tt_today() {
    for (auto& [service, days] : schedules_) {
        if (!days.empty()) days.erase(days.begin());
    }
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

}  // namespace spi

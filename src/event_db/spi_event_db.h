// The programme database worker (QID_EVTDB): keeps today's and tomorrow's programmes of every service, and
// tells which one is on now and which comes next on the service that is being listened to.
//
// What is filed where is decided in filing_rules.h. All members are touched on the worker's own thread only,
// so there is no lock; what leaves is copies.
//
// Times inside are minutes of the local day (0 to 1439) and local day numbers (MJD).
#pragma once

#include <cstdint>
#include <map>
#include <memory>

#include "src/event/event_proc.h"
#include "src/event/outbox.h"
#include "src/parse/mot_date_time.h"
#include "src/parse/pi_schedule_programme.h"
#include "src/parse/serv_elem_id.h"

namespace spi {

// The programmes of one local day by their start minute. A programme whose local start lies before midnight
// of its coded day is filed under the day before, with a key that wrapped (65536 minus the minutes), which no
// search reaches.
using DaySchedule = std::map<std::uint16_t, PiScheduleProgramme>;
// The days of one service by their local day number. Shared, because the current timetable outlives its day's
// removal.
using ServiceSchedule = std::map<std::uint32_t, std::shared_ptr<DaySchedule>>;

class SpiEventDb final : public event_proc {
 public:
    SpiEventDb();
    ~SpiEventDb() override;

    void post() override;
    void process_event(event& e) override;

    // ---- the store ----

    // Files a programme if it starts today or tomorrow by the host's date, tells the listener notifier of it,
    // and looks for now and next if one of them is missing. The first programme for a start minute wins. 0:
    // filed, or the minute was taken; 1: refused (no date yet, no start day, another day). `as_received` is
    // the payload that both came in: it says the same, and goes on to the notifier. Without one a payload is
    // made.
    int handle_programme(const ServElemId& service, const PiScheduleProgramme& programme,
                         std::shared_ptr<i_evt_base> as_received = nullptr);
    // Drops the first day of every service. Always 1.
    int remove_tt_today();
    // Empties everything but the current service and date. Of now and next only title and time are emptied.
    // Always 0.
    int clear_db();
    // A walk over all days for debugging; without any effect.
    void dump_db() const;

    // ---- now and next ----

    // Chooses the current timetable: the first day of the current service, or the second. 0: chosen; 1: there
    // is none, and nothing changes.
    int find_curtt(bool tomorrow);
    // Each true when it replaced its programme; false without a current timetable.
    bool find_now();
    bool find_next();
    // 0 after sending an update; 1 when nothing changed or no timetable is to be had.
    int check_send_nownext();
    // After a programme was filed for `service`.
    int check_match(const ServElemId& service);
    int cfu_service(const ServElemId& service);
    int cfu_date_time(const MotDateTime& now);

 private:
    void send_nownext();

    outbox results_{*this, spare_node()};
    ServElemId current_service_;
    MotDateTime current_time_;  // year 0: no date set yet
    PiScheduleProgramme now_;
    PiScheduleProgramme next_;
    // The day in which now is looked for; empty when none is chosen.
    std::shared_ptr<DaySchedule> current_timetable_;
    // Ordered: a broadcast chooses the identifiers, and could give them all one hash value.
    std::map<ServElemId, ServiceSchedule> schedules_;
};

}  // namespace spi

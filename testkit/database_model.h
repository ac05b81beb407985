// A model of the programme database, written for the tests alone: every filed programme is one row of a flat
// table, days are numbers that are never used twice, and all times are minutes since midnight in plain ints.
// It shares the records with the library and nothing else.
//
// Dates have to be real ones (of 1900-03-01 to 2100-02-28): the model counts days, not calendars.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "src/parse/pi_schedule_programme.h"

namespace event_db {

// A sent event as text: queue, code and every field.
std::string as_text(const spi::ServElemId& service);
std::string as_text(const spi::PiScheduleProgramme& p);

// What the database sends to the listener notifier: a programme that it stored, or now and next.
struct notice {
    enum kind_t { kStored, kNowNext };
    kind_t kind;
    spi::ServElemId service;             // of a stored programme
    spi::PiScheduleProgramme programme;  // the stored one, or now
    spi::PiScheduleProgramme next;
};
std::string as_text(const notice& n);

class database_model {
 public:
    // Each gives what is sent for it.
    std::vector<notice> date_time(const spi::MotDateTime& t);
    std::vector<notice> service(const spi::ServElemId& id);
    std::vector<notice> programme(const spi::ServElemId& id, const spi::PiScheduleProgramme& p);
    std::vector<notice> resend();
    std::vector<notice> clear();

    // Lets go of the rows that nothing can reach any more; for runs over many days.
    void forget_retired_days();

    // How often the paths were taken that a random walk may miss.
    struct counts {
        int stored = 0, refused = 0, taken = 0, wrapped_keys = 0;
        int updates = 0, updates_without_next = 0, untitled_now = 0;
        int unchanged_now = 0, unchanged_next = 0, nothing_on = 0;
        int switched_to_tomorrow = 0, no_tomorrow = 0;
        int still_running = 0, end_minute_still_running = 0;
        int retired = 0, searched_in_retired_day = 0;
    };
    counts seen;

 private:
    using station_key = std::tuple<unsigned, unsigned, unsigned>;
    struct row {
        int day_object;  // which day it belongs to; a retired day's rows stay
        int key;
        spi::PiScheduleProgramme programme;
    };
    struct instant {
        long day;
        int hour;
        int minute;
    };

    static station_key key_of(const spi::ServElemId& id) { return {id.ecc, id.sid, id.scids}; }
    static int start(const spi::PiScheduleProgramme& p) {
        return p.time.hour * 60 + p.time.minute + p.time.lto * 30;
    }
    static int end(const spi::PiScheduleProgramme& p) { return (start(p) + p.duration / 60) % 1440; }
    static bool set(const spi::PiScheduleProgramme& p) { return !p.name.empty() && p.time.mjd != 0; }
    static void unset(spi::PiScheduleProgramme& p);
    static instant instant_after(const spi::PiScheduleProgramme& p, int minutes);
    static bool running_at(const spi::PiScheduleProgramme& p, long day, int hour, int minute);

    const row* row_at(int day_object, int key) const;
    std::vector<const row*> rows_of(int day_object) const;  // by their keys
    bool choose_timetable(bool tomorrow);
    bool replace_now();
    bool replace_next();
    std::vector<notice> search();
    notice update() const { return {notice::kNowNext, {}, now_, next_}; }

    spi::ServElemId current_;
    bool date_known_ = false;
    long today_ = 0;  // as a day number
    int hour_ = 0;
    int minute_ = 0;
    spi::PiScheduleProgramme now_;
    spi::PiScheduleProgramme next_;
    std::optional<int> timetable_;                         // a day object
    std::map<station_key, std::map<long, int>> stations_;  // day number to day object
    std::vector<row> rows_;
    std::vector<bool> retired_;  // by day object
};

}  // namespace event_db

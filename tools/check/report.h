// One checked recording or folder, whole. What the printers print.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "tools/check/finding.h"
#include "tools/check/history.h"
#include "tools/check/input.h"
#include "tools/check/replay_result.h"
#include "tools/check/schedules.h"

namespace dabspi::check {

struct check_report {
    checked_input input;
    replay_result replayed;
    history past;
    std::vector<service_schedule> schedules;
    std::vector<finding> findings;           // those that count, sorted
    std::size_t left_out = 0;                // of lower severity
    std::vector<std::string> disagreements;  // see receiver_model.h
};

struct check_settings {
    check_settings(severity lowest = severity::note)
        : from(lowest) {}  // NOLINT: a severity is all that most say

    severity from;          // of findings that count
    long ends_within = 24;  // hours from the end of the clock in which a schedule's end is a finding
};

// Plays the input and looks for findings. The input must have no errors; `storage_path` is an existing
// directory.
// `played` is called once the library is gone and `storage_path` is of no more use.
check_report check_input(checked_input input, const check_settings& settings, const std::string& storage_path,
                         const std::function<bool(std::size_t)>& go_on = {},
                         const std::function<void()>& played = {});

// "E1.C185 Lakeside, 2026-03-10": the ensemble with its label, as far as they are known, and the last date.
std::string subject_text(const check_report& of);
// "E1.C185 Lakeside"
std::string ensemble_text(const check_report& of);

// What a service has on one day.
struct day_summary {
    long day;
    std::size_t programmes = 0;
    long first = 0;    // start of the first, local minutes since 1858-11-17
    long last = 0;     // end of the last
    long covered = 0;  // minutes of this day with a programme
};
std::vector<day_summary> days_of(const history& in, const service_schedule& schedule);

// Notes, warnings, errors.
std::array<std::size_t, 3> count_by_severity(const std::vector<finding>& findings);

// "2 errors, 1 warning", "nothing found"
std::string count_text(const std::vector<finding>& findings);
// "2,378 calls, 2026-03-10 05:00 to 2026-03-11 09:00"
std::string span_text(const check_report& of);
// "1,234 things", "1 thing"
std::string number_of(std::size_t count, const std::string& thing);

// Where a finding is, in one line: "line 12, pi.ehb, byte 31"; parts that mean nothing are left out.
std::string location_text(const check_report& of, const finding& what);

}  // namespace dabspi::check

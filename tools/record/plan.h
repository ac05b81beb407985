// A plan: what `dabspi record` makes a recording of. docs/plans.md describes its format.
//
// read_plan checks form, ranges and names; whether the files exist, and what is in them, shows when the
// recording is made. Nothing is thrown for a bad plan: what is wrong stands in `errors`.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/encode/broadcast_object.h"
#include "tools/encode/local_offset.h"
#include "tools/record/plan_keys.h"
#include "tools/recording/recording.h"

namespace dabspi {

// A minute of the broadcast clock.
struct plan_minute {
    std::int64_t number = 0;  // minutes since 1858-11-17 00:00

    std::string date() const;  // "20260310"
    std::string time() const;  // "0500"
    std::string text() const;  // "2026-03-10T05:00"
    plan_minute days_later(int days) const;
};

struct planned_object {
    enum class kind { xml, image, object };

    std::string where;  // in the plan
    kind what = kind::xml;
    std::string source;               // a path; "{date}" in this and the next two stands for the day
    std::optional<std::string> name;  // the content name
    std::optional<std::string> file;  // relative to the recording
    bool in_line = false;             // the body stands in the recording itself
    std::vector<int> days = {0};      // after the day on which it is sent
    std::optional<std::uint8_t> content_type;
    std::optional<std::uint16_t> content_subtype;
    std::optional<spi_object::ensemble_id> ensemble;
    token_choice tokens;
    bool lenient = false;
    std::string offset;                 // or zone, as it was given
    std::optional<local_offset> local;  // what it says
    std::optional<service_id> data_service;
};

struct planned_carousel {
    std::optional<service_id> data_service;
    unsigned objects_a_minute = 0;  // 0: all in one minute
    std::vector<planned_object> objects;
};

struct planned_service {
    service_id service;
    std::uint16_t ensemble = 0;
};

// Does one thing at most; a note stands before it.
struct planned_step {
    std::string where;
    std::optional<plan_minute> at;  // only with a clock that ticks by itself; else where the last step was
    std::string note;
    std::optional<plan_minute> clock;  // only without
    std::optional<std::string> service;
    std::optional<std::string> carousel;
    std::optional<planned_object> feed;
    bool resend = false;
};

struct planned_clock {
    plan_minute from;
    plan_minute to;
    unsigned every = 1;  // minutes
};

struct plan {
    std::string about;
    std::optional<service_id> data_service;
    std::optional<planned_clock> clock;
    std::map<std::string, planned_service> services;
    std::map<std::string, planned_carousel> carousels;
    std::vector<planned_step> steps;
    std::vector<plan_error> errors;
};

plan read_plan(std::string_view text);

}  // namespace dabspi

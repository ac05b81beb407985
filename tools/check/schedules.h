// The schedule of each service as a receiver came to know it: for findings, and for showing it.
#pragma once

#include <string>
#include <vector>

#include "tools/check/history.h"

namespace dabspi::check {

struct service_schedule {
    spi::ServElemId service;
    std::string name;                     // empty when no service information gave one
    std::vector<std::size_t> programmes;  // in history::programmes; by their start, reachable ones only
};

// Of every service that has programmes, and of those that were listened to. Where a day was received several
// times, with everything forgotten in between, its fullest reception stands.
std::vector<service_schedule> schedules_of(const history& in);

// Two programmes that do not follow each other in the same minute. `first` runs longest of all that start
// before `second`, so that a short programme within a long one makes no gap.
struct schedule_boundary {
    std::size_t first;  // in history::programmes
    std::size_t second;
};

// By the start of `second`.
std::vector<schedule_boundary> boundaries_of(const history& in, const service_schedule& schedule);

}  // namespace dabspi::check

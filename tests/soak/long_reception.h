// Watches the process while a soak is played: the same number of descriptors and threads at the end of each
// day, and as much memory as on the same day of the period before.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "testkit/counted_heap.h"
#include "tests/soak/gauges.h"
#include "tests/soak/soak_run.h"

namespace soak {

struct sample {
    int day;
    process_use process;
    heap_use heap;
};

struct long_reception_result {
    soak_run::figures figures;
    std::vector<sample> samples;  // at the end of each period's last day
    heap_use of_library = {};     // at the end of the last day
    double seconds = 0;
    std::size_t listener_threads = 0;
    library_model::counts model;
    event_db::database_model::counts database;
    std::size_t carousel_objects = 0;
    std::uint64_t carousel_bytes = 0;
    std::size_t logo_files = 0;
};

// Plays `days` days, the last of which is the day before `end`. Prints a line now and then when
// DABSPI_SOAK_PROGRESS is set.
long_reception_result play(const std::function<std::unique_ptr<receiver>()>& make,
                           const std::string& logo_root, int days, long end, habits h = {});

// Compares the ends of the periods: live heap from 20 days on; resident memory from 100 days on, before which
// the allocator has not settled. Of a shorter reception, and under a sanitizer, it says nothing.
void expect_nothing_grew(const long_reception_result& result);
void print_table(const long_reception_result& result);

}  // namespace soak

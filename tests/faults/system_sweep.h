// The table of the system's calls that may fail, and what follows from each.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "tests/faults/system_faults.h"
#include "tests/faults/whole_reception.h"

// One point of a sweep: which call failed, and how.
struct strike {
    surface interface;
    whole_reception::block_t block;
    system_faults::mode_t mode;
    long n;
    int error;
    std::string name;  // the file name of the first call that failed, where it has one
    bool once() const { return mode == system_faults::kOnce; }
};

struct fault_row {
    const char* function;
    std::vector<int> errors;
    // Whether the core's reception has such calls; the wrapper's has them all.
    bool core;
    // What the struck reception must show, beyond what holds for every reception.
    void (*check)(const reception_result& reception, const strike& at);
    // Once only: from then on such an error would have no end, and no system does that.
    bool passing = false;
};

inline void PrintTo(const fault_row& row, std::ostream* out) {
    *out << row.function;
}

const std::vector<fault_row>& system_call_rows();

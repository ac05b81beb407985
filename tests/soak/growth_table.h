// The table of what grows, printed after the last test: a linear extrapolation to an hour of air time.
#pragma once

#include <cstdint>

namespace soak {

struct growth_row {
    const char* attack;
    const char* given_back_by;
    std::uint64_t air;    // bytes fed
    std::int64_t memory;  // bytes kept
};

// Takes no memory from the heap, which is being measured.
void add_to_growth_table(const growth_row& row);

}  // namespace soak

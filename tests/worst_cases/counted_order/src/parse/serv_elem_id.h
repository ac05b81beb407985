// Stands in front of the library's header, for tests that count how often the tables compare identifiers:
// they are ordered by std::less, which this executable's own does as operator< does, and counts.
#pragma once

#include <cstdint>
#include <functional>

#include_next "src/parse/serv_elem_id.h"

namespace counted_order {

inline std::uint64_t comparisons = 0;  // of the test's own thread: the workers' threads idle

}  // namespace counted_order

template <>
struct std::less<spi::ServElemId> {
    bool operator()(const spi::ServElemId& a, const spi::ServElemId& b) const {
        ++counted_order::comparisons;
        return a < b;
    }
};

// Compares two programme guides.
//
// Services are the same by their identifiers; where one side does not know the ECC, by SId and SCIdS. What a
// service says of itself is compared where both sides announce it.
#pragma once

#include <cstdint>
#include <set>

#include "tools/compare/difference.h"

namespace dabspi::compare {

struct compare_settings {
    std::int64_t tolerance = 0;         // seconds, for starts and durations
    std::set<difference_kind> ignored;  // kinds that are left out
};

// The guides must outlive what is made. n log n in services and programmes.
comparison compare_guides(const guide::programme_guide& a, const guide::programme_guide& b,
                          const compare_settings& settings);

}  // namespace dabspi::compare

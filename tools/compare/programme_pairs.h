// Which programme of one schedule is which of another.
//
// One to one. First those that begin at the same time, give or take the tolerance, with the same identifier
// or name; then, of the same identifier and then of the same name, those that are nearest to each other in
// time: they were moved; then those that begin at the same time: they were renamed. Days that only one side
// has are told as a whole, and their programmes are not looked for on other days.
//
// Work is n log n in the number of programmes.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "tools/guide/programme_guide.h"

namespace dabspi::compare {

// The local day of an instant, the same one for both sides: by the offsets that A codes, else by B's, else in
// UTC.
class local_days {
 public:
    local_days(const guide::service& a, const guide::service& b);

    long of(std::int64_t instant) const;

 private:
    std::vector<std::pair<std::int64_t, int>> offsets_;  // half-hours from that instant on
};

struct paired_programmes {
    // By A's start.
    std::vector<std::pair<const guide::programme*, const guide::programme*>> pairs;
    // Of days that both sides have; by their start.
    std::vector<const guide::programme*> only_a;
    std::vector<const guide::programme*> only_b;
    // Days that one side alone has, and how many programmes it has there.
    std::vector<std::pair<long, std::size_t>> days_a;
    std::vector<std::pair<long, std::size_t>> days_b;
};

// `tolerance` in seconds. The result points into both services, which must outlive it.
paired_programmes pair_programmes(const guide::service& a, const guide::service& b, const local_days& days,
                                  std::int64_t tolerance);

}  // namespace dabspi::compare

// Where spans of time that overlap stand beside each other: each in a lane of its own, as few as will do.
#pragma once

#include <cstddef>
#include <vector>

namespace dabspi::check {

struct time_span {
    long from;
    long to;  // a span of no length takes a minute, so that it is seen
};

struct lane_place {
    std::size_t lane;  // 0 is uppermost
    std::size_t of;    // lanes that its group of overlapping spans takes
};

// So many lanes can still be told apart. Spans beyond them share the last one: nobody reads that any more,
// and a broadcast of thousands of overlaps does not make a page of thousands of lanes.
constexpr std::size_t kMostLanes = 6;

// One place a span, in their order. The spans must be in the order of `from`.
std::vector<lane_place> lanes_of(const std::vector<time_span>& spans);

}  // namespace dabspi::check

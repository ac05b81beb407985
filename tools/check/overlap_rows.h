// Where spans of time that overlap stand beside each other: each in a row of its own, as few as will do.
#pragma once

#include <cstddef>
#include <vector>

namespace dabspi::check {

struct time_span {
    long from;
    long to;  // a span of no length takes a minute, so that it is seen
};

struct row_position {
    std::size_t row;  // 0 is uppermost
    std::size_t of;   // rows that its group of overlapping spans takes
};

// So many rows can still be told apart. Spans beyond them share the last one: nobody reads that any more,
// and a broadcast of thousands of overlaps does not make a page of thousands of rows.
constexpr std::size_t kMostRows = 6;

// One position a span, in their order. The spans must be in the order of `from`.
std::vector<row_position> rows_of(const std::vector<time_span>& spans);

}  // namespace dabspi::check

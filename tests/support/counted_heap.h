// Counts what the process takes from the heap through operator new. For executables that link
// counted_heap.cpp, which replaces it. Bytes are those that the C library sets aside for a request, which may
// be a few more than were asked for.
#pragma once

#include <cstdint>

// Counts from its construction on; all threads. One at a time, since there is one highest point.
class counted_heap {
 public:
    counted_heap();

    std::uint64_t live()
        const;  // bytes taken and not given back since; 0 when more was given back than taken
    std::uint64_t peak() const;   // the highest that live() has been
    std::uint64_t total() const;  // bytes taken in all

 private:
    std::uint64_t live_before_;
    std::uint64_t total_before_;
};

// Counts what the process takes from the heap through operator new. For executables that link
// counted_heap.cpp, which replaces it. Bytes are those that the C library sets aside for a request, which may
// be a few more than were asked for.
#pragma once

#include <cstdint>

// Taken by the process and not given back, all threads.
struct heap_use {
    std::int64_t bytes;
    std::int64_t blocks;
};
heap_use live_heap();

// Counts from its construction on; all threads. One at a time, since there is one highest point.
class counted_heap {
 public:
    counted_heap();

    // Bytes taken and not given back since. Negative when what was there before has been given back.
    std::int64_t live() const;
    std::uint64_t peak() const;    // the highest that live() has been, from 0
    std::uint64_t total() const;   // bytes taken in all
    std::uint64_t blocks() const;  // how often anything was taken

 private:
    std::int64_t live_before_;
    std::uint64_t total_before_;
    std::uint64_t blocks_before_;
};

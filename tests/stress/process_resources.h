// What a process holds of the system: its threads, the library's among them, and its open descriptors.
#pragma once

#include <cstddef>
#include <filesystem>
#include <iterator>

#include "tests/server/live_threads.h"

inline std::size_t entries_in(const char* directory) {
    const std::filesystem::directory_iterator all(directory);
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

inline bool no_thread_of_the_library_lives() {
    return live_threads_become(0);
}

class process_resources {
 public:
    process_resources() {
        // Of servers that were there before, a thread may still be on its way out.
        no_thread_of_the_library_lives();
        threads_ = entries_in(kThreads);
        descriptors_ = entries_in(kDescriptors);
    }

    // True when no more threads and as many descriptors are there as at the construction.
    bool are_back() const {
        return comes_true([this] { return entries_in(kThreads) <= threads_; }) &&
               entries_in(kDescriptors) == descriptors_;
    }

 private:
    static constexpr const char* kThreads = "/proc/self/task";
    static constexpr const char* kDescriptors = "/proc/self/fd";
    std::size_t threads_ = 0;
    std::size_t descriptors_ = 0;
};

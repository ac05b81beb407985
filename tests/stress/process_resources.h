// What a process holds of the system: its threads, the library's among them, and its open descriptors.
#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <thread>

#include "tests/server/live_threads.h"

inline std::size_t entries_in(const char* directory) {
    const std::filesystem::directory_iterator all(directory);
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

// The kernel takes a thread off its list a moment after it has told who joins it: a count taken right away
// may be one too high. True as soon as `condition` holds; false after a minute.
template <class Condition>
bool comes_true(Condition condition) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > limit) return false;
        std::this_thread::yield();
    }
    return true;
}

inline bool no_thread_of_the_library_lives() {
    return comes_true([] { return live_threads() == 0; });
}

class process_resources {
 public:
    // True when as many threads and descriptors are there as at the construction.
    bool are_back() const {
        return comes_true([this] { return entries_in(kThreads) == threads_; }) &&
               entries_in(kDescriptors) == descriptors_;
    }

 private:
    static constexpr const char* kThreads = "/proc/self/task";
    static constexpr const char* kDescriptors = "/proc/self/fd";
    std::size_t threads_ = entries_in(kThreads);
    std::size_t descriptors_ = entries_in(kDescriptors);
};

// The library's threads that live in this process, by the name that they all carry.
#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

inline std::size_t live_threads() {
    std::size_t count = 0;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream comm(task.path() / "comm");
        std::string name;
        if (std::getline(comm, name) && name == "dabspi") ++count;
    }
    return count;
}

// True as soon as `condition` holds; false after a minute.
template <class Condition>
bool comes_true(Condition condition) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > limit) return false;
        std::this_thread::yield();
    }
    return true;
}

// The kernel takes a thread off its list a moment after it has told who joins it, an emulator a longer one: a
// count taken right away may be too high.
inline bool live_threads_become(std::size_t count) {
    return comes_true([&] { return live_threads() == count; });
}

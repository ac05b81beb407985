#include "tests/wrap/process_state.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

namespace {

int entries(const char* directory) {
    const std::filesystem::directory_iterator first(directory);
    return static_cast<int>(std::distance(begin(first), end(first)));
}

// ThreadSanitizer starts a thread of its own together with a process's first thread: it is to be counted
// before and after alike.
void start_and_end_a_thread() {
    long id = 0;
    std::thread([&id] { id = syscall(SYS_gettid); }).join();
    while (std::filesystem::exists("/proc/self/task/" + std::to_string(id)))
        std::this_thread::yield();
}

}  // namespace

int open_descriptors() {
    return entries("/proc/self/fd");  // the listing's own is among them, every time
}

int running_threads() {
    start_and_end_a_thread();
    return entries("/proc/self/task");
}

int mappings_of(const std::string& text) {
    std::ifstream maps("/proc/self/maps");
    int found = 0;
    for (std::string line; std::getline(maps, line);)
        if (line.find(text) != std::string::npos) ++found;
    return found;
}

bool wait_for_threads(int count) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (entries("/proc/self/task") > count) {
        if (std::chrono::steady_clock::now() > limit) return false;
        std::this_thread::yield();
    }
    return true;
}

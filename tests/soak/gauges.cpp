#include "tests/soak/gauges.h"

#include <dirent.h>
#include <malloc.h>

#include <cstdlib>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>

namespace soak {
namespace {

struct close_directory {
    void operator()(DIR* directory) const { closedir(directory); }
};

// Without "." and "..", and without the descriptor that lists them.
std::size_t entries(const char* path, std::size_t own) {
    const std::unique_ptr<DIR, close_directory> listing(opendir(path));
    std::size_t count = 0;
    while (listing && readdir(listing.get()) != nullptr)
        ++count;
    return count - 2 - own;
}

std::size_t resident() {
    std::ifstream status("/proc/self/status");
    std::string word;
    std::size_t kib = 0;
    while (status >> word)
        if (word == "VmRSS:") status >> kib;
    return kib;
}

}  // namespace

int from_environment(const char* variable, int otherwise) {
    const char* const text = std::getenv(variable);
    if (text == nullptr || *text == '\0') return otherwise;
    const int value = std::atoi(text);
    if (value < 1) throw std::invalid_argument(std::string(variable) + " must be a number from 1");
    return value;
}

process_use process_now() {
    process_use use{};
    use.resident_kib = resident();
    if (!kSanitized) {
        const struct mallinfo2 info = mallinfo2();
        use.allocator_kib = (info.uordblks + info.hblkhd) / 1024;
    }
    use.descriptors = entries("/proc/self/fd", 1);
    use.threads = entries("/proc/self/task", 0);
    return use;
}

}  // namespace soak

#include "tests/event/allocation_faults.h"

#include <atomic>
#include <cstdlib>
#include <new>

#include "tests/event/thread_faults.h"

namespace {

constexpr int kNobody = -2;

std::atomic<int> failing_thread{kNobody};
std::atomic<long> left{0};
std::atomic<bool> for_good{false};
std::atomic<bool> has_struck{false};

bool fails() {
    const int thread = failing_thread.load();
    if (thread == kNobody) return false;
    if (thread != allocation_faults::kEveryThread && thread != static_cast<int>(thread_faults::current()))
        return false;
    const long n = left.fetch_sub(1);
    if (n > 1 || (n < 1 && !for_good)) return false;
    has_struck = true;
    return true;
}

void* allocate(std::size_t size) {
    if (fails()) throw std::bad_alloc();
    void* const memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

}  // namespace

void* operator new(std::size_t size) {
    return allocate(size);
}
void* operator new[](std::size_t size) {
    return allocate(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

allocation_faults::allocation_faults(int thread, long n, how repeated) {
    has_struck = false;
    for_good = repeated == kFromThenOn;
    left = n;
    failing_thread = thread;
}
allocation_faults::~allocation_faults() {
    stop();
}
bool allocation_faults::struck() const {
    return has_struck;
}
void allocation_faults::stop() {
    failing_thread = kNobody;
}

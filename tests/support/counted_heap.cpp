#include "tests/support/counted_heap.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::uint64_t> live_bytes{0};
std::atomic<std::uint64_t> highest{0};
std::atomic<std::uint64_t> taken{0};

void* take(std::size_t size) {
    void* const memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) throw std::bad_alloc();
    const std::uint64_t bytes = malloc_usable_size(memory);
    taken += bytes;
    const std::uint64_t now = live_bytes += bytes;
    std::uint64_t before = highest;
    while (now > before && !highest.compare_exchange_weak(before, now)) {
    }
    return memory;
}

void give_back(void* memory) noexcept {
    if (memory == nullptr) return;
    live_bytes -= malloc_usable_size(memory);
    std::free(memory);
}

}  // namespace

void* operator new(std::size_t size) {
    return take(size);
}
void* operator new[](std::size_t size) {
    return take(size);
}
void operator delete(void* memory) noexcept {
    give_back(memory);
}
void operator delete[](void* memory) noexcept {
    give_back(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    give_back(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    give_back(memory);
}

counted_heap::counted_heap() : live_before_(live_bytes), total_before_(taken) {
    highest = live_before_;
}
std::uint64_t counted_heap::live() const {
    const std::uint64_t now = live_bytes;
    return now > live_before_ ? now - live_before_ : 0;
}
std::uint64_t counted_heap::peak() const {
    return highest - live_before_;
}
std::uint64_t counted_heap::total() const {
    return taken - total_before_;
}

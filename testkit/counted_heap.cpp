#include "testkit/counted_heap.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::int64_t> live_bytes{0};
std::atomic<std::int64_t> live_blocks{0};
std::atomic<std::int64_t> highest{0};
std::atomic<std::uint64_t> taken{0};
std::atomic<std::uint64_t> blocks_taken{0};

void* take(std::size_t size) {
    void* const memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) throw std::bad_alloc();
    const auto bytes = static_cast<std::int64_t>(malloc_usable_size(memory));
    taken += static_cast<std::uint64_t>(bytes);
    ++live_blocks;
    ++blocks_taken;
    const std::int64_t now = live_bytes += bytes;
    std::int64_t before = highest;
    while (now > before && !highest.compare_exchange_weak(before, now)) {
    }
    return memory;
}

void give_back(void* memory) noexcept {
    if (memory == nullptr) return;
    live_bytes -= static_cast<std::int64_t>(malloc_usable_size(memory));
    --live_blocks;
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

heap_use live_heap() {
    return {live_bytes, live_blocks};
}

counted_heap::counted_heap() : live_before_(live_bytes), total_before_(taken), blocks_before_(blocks_taken) {
    highest = live_before_;
}
std::int64_t counted_heap::live() const {
    return live_bytes - live_before_;
}
std::uint64_t counted_heap::peak() const {
    return static_cast<std::uint64_t>(highest - live_before_);
}
std::uint64_t counted_heap::total() const {
    return taken - total_before_;
}
std::uint64_t counted_heap::blocks() const {
    return blocks_taken - blocks_before_;
}

// Counts what operator new has given out and not got back, for the whole executable.
#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "tests/soak/gauges.h"

namespace {

std::atomic<std::int64_t> live_bytes{0};
std::atomic<std::int64_t> live_blocks{0};

void* allocate(std::size_t size) {
    void* const memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) throw std::bad_alloc();
    live_bytes.fetch_add(static_cast<std::int64_t>(malloc_usable_size(memory)), std::memory_order_relaxed);
    live_blocks.fetch_add(1, std::memory_order_relaxed);
    return memory;
}

void release(void* memory) noexcept {
    if (memory == nullptr) return;
    live_bytes.fetch_sub(static_cast<std::int64_t>(malloc_usable_size(memory)), std::memory_order_relaxed);
    live_blocks.fetch_sub(1, std::memory_order_relaxed);
    std::free(memory);
}

}  // namespace

void* operator new(std::size_t size) {
    return allocate(size);
}
void* operator new[](std::size_t size) {
    return allocate(size);
}
void operator delete(void* memory) noexcept {
    release(memory);
}
void operator delete[](void* memory) noexcept {
    release(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    release(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    release(memory);
}

namespace soak {

heap_use live_heap() {
    return {live_bytes.load(), live_blocks.load()};
}

}  // namespace soak

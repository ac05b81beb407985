#include "tests/wrap/failing_new.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>
#include <thread>

namespace {

std::atomic<long> counted{0};
std::atomic<long> fails_at{0};  // 0: never
std::atomic<bool> from_then_on{false};
std::atomic<bool> failed{false};
std::atomic<std::thread::id> failed_on{std::thread::id()};
std::atomic<long> alive{0};

bool must_fail() {
    const long first = fails_at;
    if (first == 0) return false;
    const long n = ++counted;
    if (n != first && !(from_then_on && n > first)) return false;
    if (n == first) failed_on = std::this_thread::get_id();
    failed = true;
    return true;
}

void* allocate(std::size_t size) noexcept {
    if (must_fail()) return nullptr;
    void* const block = std::malloc(size == 0 ? 1 : size);
    if (block != nullptr) ++alive;
    return block;
}

void* allocate_or_throw(std::size_t size) {
    if (void* const block = allocate(size)) return block;
    throw std::bad_alloc();
}

void release(void* block) noexcept {
    if (block == nullptr) return;
    --alive;
    std::free(block);
}

}  // namespace

namespace failing_new {

void fail_at(long n, mode_t mode) {
    stop();
    counted = 0;
    failed = false;
    from_then_on = mode == kFromThenOn;
    fails_at = n;
}
void stop() {
    fails_at = 0;
}
bool has_failed() {
    return failed;
}
bool failed_on_this_thread() {
    return failed && failed_on.load() == std::this_thread::get_id();
}
long count() {
    return counted;
}
long living() {
    return alive;
}

}  // namespace failing_new

void* operator new(std::size_t size) {
    return allocate_or_throw(size);
}
void* operator new[](std::size_t size) {
    return allocate_or_throw(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}
void operator delete(void* block) noexcept {
    release(block);
}
void operator delete[](void* block) noexcept {
    release(block);
}
void operator delete(void* block, std::size_t) noexcept {
    release(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    release(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    release(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
    release(block);
}

// What the process holds: memory, descriptors, threads; and what its environment asks for.
#pragma once

#include <cstddef>

namespace soak {

struct process_use {
    std::size_t resident_kib;   // VmRSS
    std::size_t allocator_kib;  // in use by the C library's allocator, 0 where a sanitizer replaces it
    std::size_t descriptors;
    std::size_t threads;
};
process_use process_now();

// The number in the environment variable, from 1, or the default.
int from_environment(const char* variable, int otherwise);

// Under a sanitizer memory figures say nothing about the library, and everything takes longer.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kSanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif
#else
constexpr bool kSanitized = false;
#endif

}  // namespace soak

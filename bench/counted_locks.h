// How often the library takes a mutex, and how often it notifies a condition variable: counted by the
// linker's wrappers (-Wl,--wrap), for programs that are linked with counted_locks.cpp.
#pragma once

#include <cstdint>

namespace bench {

std::uint64_t locks_and_notifications();
// These are not to count.
void forget_locks(std::uint64_t count);

}  // namespace bench

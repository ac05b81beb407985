// How often the library takes a mutex, and how often it notifies a condition variable. For programs that are
// linked with counted_locks.cpp and -Wl,--wrap=pthread_mutex_lock.
#pragma once

#include <cstdint>

namespace bench {

std::uint64_t locks_and_notifications();
// These are not to count.
void forget_locks(std::uint64_t count);

}  // namespace bench

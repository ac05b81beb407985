#include "bench/counted_locks.h"

#include <pthread.h>

#include <atomic>
#include <condition_variable>

namespace {

std::atomic<std::uint64_t> counted{0};

}  // namespace

std::uint64_t bench::locks_and_notifications() {
    return counted;
}
void bench::forget_locks(std::uint64_t count) {
    counted -= count;
}

extern "C" {
int __real_pthread_mutex_lock(pthread_mutex_t* mutex);
int __wrap_pthread_mutex_lock(pthread_mutex_t* mutex);

int __wrap_pthread_mutex_lock(pthread_mutex_t* mutex) {
    ++counted;
    return __real_pthread_mutex_lock(mutex);
}
}

// The standard library's shared object has these two. Defined here as well they are the ones that everybody
// in the process calls.
void std::condition_variable::notify_all() noexcept {
    ++counted;
    pthread_cond_broadcast(native_handle());
}
void std::condition_variable::notify_one() noexcept {
    ++counted;
    pthread_cond_signal(native_handle());
}

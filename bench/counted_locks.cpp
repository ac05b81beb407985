#include "bench/counted_locks.h"

#include <pthread.h>

#include <atomic>

namespace {

std::atomic<std::uint64_t> counted{0};

}  // namespace

std::uint64_t bench::locks_and_notifications() {
    return counted;
}
void bench::forget_locks(std::uint64_t count) {
    counted -= count;
}

// std::condition_variable::notify_all() and notify_one(), by their names in the object files.
extern "C" {
int __real_pthread_mutex_lock(pthread_mutex_t* mutex);
int __wrap_pthread_mutex_lock(pthread_mutex_t* mutex);
void __real__ZNSt18condition_variable10notify_allEv(void* condition);
void __wrap__ZNSt18condition_variable10notify_allEv(void* condition);
void __real__ZNSt18condition_variable10notify_oneEv(void* condition);
void __wrap__ZNSt18condition_variable10notify_oneEv(void* condition);

int __wrap_pthread_mutex_lock(pthread_mutex_t* mutex) {
    ++counted;
    return __real_pthread_mutex_lock(mutex);
}
void __wrap__ZNSt18condition_variable10notify_allEv(void* condition) {
    ++counted;
    __real__ZNSt18condition_variable10notify_allEv(condition);
}
void __wrap__ZNSt18condition_variable10notify_oneEv(void* condition) {
    ++counted;
    __real__ZNSt18condition_variable10notify_oneEv(condition);
}
}

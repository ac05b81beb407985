#include "tests/stress/sync_points.h"

#include <pthread.h>
#include <sched.h>
#include <time.h>

#include <atomic>
#include <condition_variable>
#include <cstdlib>
#include <mutex>

#include "tests/event/thread_faults.h"

extern "C" {
int __real_pthread_mutex_lock(pthread_mutex_t* mutex);
int __real_pthread_mutex_unlock(pthread_mutex_t* mutex);
int __real_pthread_cond_clockwait(pthread_cond_t* condition, pthread_mutex_t* mutex, clockid_t clock,
                                  const timespec* until);
}

namespace {

// ---- shuffling ----

enum temper { kSwift, kYielding, kSlow };

struct own_stream {
    std::uint64_t epoch = 0;  // of the shuffled_timing that it was drawn for
    std::uint64_t passed = 0;
    std::uint64_t state = 0;
    temper mood = kSwift;
};

std::atomic<std::uint64_t> seed_in_use{0};
std::atomic<std::uint64_t> current_epoch{0};  // odd while a shuffled_timing lives
std::atomic<std::uint64_t> streams_drawn{0};
std::atomic<std::uint64_t> points_passed{0};
thread_local own_stream stream;

std::uint64_t mixed(std::uint64_t x) {  // the finalizer of splitmix64
    x += 0x9E3779B97F4A7C15U;
    x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9U;
    x = (x ^ (x >> 27)) * 0x94D049BB133111EBU;
    return x ^ (x >> 31);
}

std::uint64_t draw() {  // xorshift64
    stream.state ^= stream.state << 13;
    stream.state ^= stream.state >> 7;
    stream.state ^= stream.state << 17;
    return stream.state;
}

void begin_stream(std::uint64_t epoch) {
    // The library's threads are numbered in the order of their creation, which does not depend on timing.
    const std::uint64_t number =
        thread_faults::current() != 0 ? thread_faults::current() : 1000 + streams_drawn++;
    stream.epoch = epoch;
    stream.passed = 0;
    stream.state = mixed(seed_in_use ^ mixed(number)) | 1;
    const std::uint64_t drawn = draw() % 4;
    stream.mood = drawn < 2 ? kSwift : drawn == 2 ? kYielding : kSlow;
}

void nap(long nanoseconds) {
    const timespec length{0, nanoseconds};
    nanosleep(&length, nullptr);
}

void spin(std::uint64_t turns) {
    for (std::atomic<std::uint64_t> i{0}; i < turns;)
        i.fetch_add(1, std::memory_order_relaxed);
}

void point() {
    const std::uint64_t epoch = current_epoch;
    if (epoch % 2 == 0) return;
    if (stream.epoch != epoch) begin_stream(epoch);
    points_passed.fetch_add(1, std::memory_order_relaxed);
    ++stream.passed;
    const std::uint64_t choice = draw() % 64;
    switch (stream.mood) {
        case kSwift:
            if (choice < 2) sched_yield();
            break;
        case kYielding:
            if (choice < 24) sched_yield();
            if (choice >= 60) spin(draw() % 2000);
            if (choice == 24) nap(static_cast<long>(draw() % 20000));
            break;
        case kSlow:
            if (choice < 16) nap(static_cast<long>(draw() % 100000));
            if (choice >= 32) sched_yield();
            break;
    }
}

// ---- holding ----

pthread_mutex_t hold_mutex = PTHREAD_MUTEX_INITIALIZER;
pthread_cond_t hold_changed = PTHREAD_COND_INITIALIZER;
std::atomic<std::uint32_t> held{0};  // changed under hold_mutex
std::uint32_t stopped = 0;           // guarded by hold_mutex

void stop_if_held() {
    if (held == 0) return;
    const unsigned number = thread_faults::current();
    if (number == 0 || number > 31) return;
    const std::uint32_t bit = std::uint32_t{1} << number;
    if ((held & bit) == 0) return;
    __real_pthread_mutex_lock(&hold_mutex);
    stopped |= bit;
    pthread_cond_broadcast(&hold_changed);
    while ((held & bit) != 0)
        pthread_cond_wait(&hold_changed, &hold_mutex);
    stopped &= ~bit;
    __real_pthread_mutex_unlock(&hold_mutex);
}

}  // namespace

extern "C" {
int __wrap_pthread_mutex_lock(pthread_mutex_t* mutex) {
    stop_if_held();
    point();
    const int result = __real_pthread_mutex_lock(mutex);
    point();
    return result;
}
int __wrap_pthread_mutex_unlock(pthread_mutex_t* mutex) {
    const int result = __real_pthread_mutex_unlock(mutex);
    point();
    return result;
}
int __wrap_pthread_cond_clockwait(pthread_cond_t* condition, pthread_mutex_t* mutex, clockid_t clock,
                                  const timespec* until) {
    point();
    const int result = __real_pthread_cond_clockwait(condition, mutex, clock, until);
    point();
    return result;
}
}

// The standard library's shared object has these two. Defined here as well they are the ones that everybody
// in the process calls; with another standard library, which has them inline or declares them otherwise, this
// does not compile.
void std::condition_variable::wait(std::unique_lock<std::mutex>& lock) {
    point();
    pthread_cond_wait(native_handle(), lock.mutex()->native_handle());
    point();
}
void std::condition_variable::notify_all() noexcept {
    point();
    pthread_cond_broadcast(native_handle());
    point();
}

shuffled_timing::shuffled_timing(std::uint64_t seed) {
    seed_in_use = mixed(seed);
    streams_drawn = 0;
    points_passed = 0;
    current_epoch += std::getenv("DABSPI_STRESS_UNSHUFFLED") == nullptr ? 1 : 2;
}
shuffled_timing::~shuffled_timing() {
    current_epoch += current_epoch % 2 == 0 ? 2 : 1;
}
std::uint64_t shuffled_timing::points() const {
    return points_passed;
}
std::uint64_t shuffled_timing::own_points() const {
    return stream.epoch == current_epoch ? stream.passed : 0;
}

held_threads::held_threads(std::uint32_t numbers) {
    hold(numbers);
}
void held_threads::hold(std::uint32_t numbers) {
    __real_pthread_mutex_lock(&hold_mutex);
    held = numbers;
    pthread_cond_broadcast(&hold_changed);
    __real_pthread_mutex_unlock(&hold_mutex);
}
void held_threads::wait_until_stopped(std::uint32_t numbers) {
    __real_pthread_mutex_lock(&hold_mutex);
    while ((stopped & numbers) != numbers)
        pthread_cond_wait(&hold_changed, &hold_mutex);
    __real_pthread_mutex_unlock(&hold_mutex);
}

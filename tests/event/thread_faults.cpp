#include "tests/event/thread_faults.h"

#include <pthread.h>
#include <sched.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <mutex>
#include <utility>

extern "C" int __real_pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                                     void* (*start)(void*), void* argument);

namespace {

std::atomic<unsigned> attempts_made{0};
std::array<std::atomic<void*>, 64> results;
std::array<std::atomic<bool>, 64> returned_by;
thread_local unsigned own_number = 0;

std::recursive_mutex& hooks_mutex() {
    static auto& instance = *new std::recursive_mutex;
    return instance;
}
std::function<bool(unsigned)> decide;         // guarded by hooks_mutex()
std::function<void(unsigned)> before_create;  // guarded by hooks_mutex()

struct start_record {
    void* (*start)(void*);
    void* argument;
    unsigned number;
};

void* run(void* pointer) {
    const start_record record = *static_cast<start_record*>(pointer);
    std::free(pointer);
    own_number = record.number;
    void* const result = record.start(record.argument);
    if (record.number < results.size()) {
        results[record.number] = result;
        returned_by[record.number] = true;
    }
    return result;
}

}  // namespace

extern "C" int __wrap_pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                                     void* (*start)(void*), void* argument) {
    const unsigned number = ++attempts_made;
    {
        const std::lock_guard<std::recursive_mutex> lock(hooks_mutex());
        if (before_create) before_create(number);
        if (decide && decide(number)) return EAGAIN;
    }
    // Not by new: the executable may count, and fail, what the library allocates.
    auto* const record = static_cast<start_record*>(std::malloc(sizeof(start_record)));
    *record = start_record{start, argument, number};
    const int failed = __real_pthread_create(thread, attributes, &run, record);
    if (failed != 0) std::free(record);
    // The new thread often gets ahead of its creator: what it must wait for shows.
    for (int i = 0; i < 10; ++i)
        sched_yield();
    return failed;
}

thread_faults::thread_faults(std::function<bool(unsigned)> fails) {
    const std::lock_guard<std::recursive_mutex> lock(hooks_mutex());
    attempts_made = 0;
    for (auto& result : results)
        result = nullptr;
    for (auto& each : returned_by)
        each = false;
    decide = std::move(fails);
}
thread_faults::~thread_faults() {
    const std::lock_guard<std::recursive_mutex> lock(hooks_mutex());
    decide = {};
    before_create = {};
}
void thread_faults::on_create(std::function<void(unsigned)> hook) {
    const std::lock_guard<std::recursive_mutex> lock(hooks_mutex());
    before_create = std::move(hook);
}
void thread_faults::fail_from_now_on() {
    const std::lock_guard<std::recursive_mutex> lock(hooks_mutex());
    decide = [](unsigned) { return true; };
}
unsigned thread_faults::attempts() const {
    return attempts_made;
}
bool thread_faults::returned(unsigned n) const {
    return returned_by.at(n);
}
void* thread_faults::result(unsigned n) const {
    return results.at(n);
}
unsigned thread_faults::current() {
    return own_number;
}

#include "tests/faults/arrivals.h"

#include <chrono>
#include <condition_variable>
#include <list>
#include <mutex>

#include "src/event/event_proc.h"

namespace {

std::mutex mutex;
std::condition_variable changed;
long counts[spi::QID_MAX + 1][spi::EC_MAX + 1];  // guarded by mutex

// What was posted at once, by code. Counting takes no memory: tests refuse it to whoever posts.
struct posted {
    long of[spi::EC_MAX + 1] = {};
};

void note(spi::_qid queue, const posted& events) {
    const std::lock_guard<std::mutex> lock(mutex);
    for (std::size_t code = 0; code <= spi::EC_MAX; ++code)
        counts[queue][code] += events.of[code];
    changed.notify_all();
}

}  // namespace

namespace arrivals {

void forget() {
    const std::lock_guard<std::mutex> lock(mutex);
    for (auto& queue : counts)
        for (long& count : queue)
            count = 0;
}

bool wait_for(spi::_qid queue, spi::event_code code, long count) {
    std::unique_lock<std::mutex> lock(mutex);
    return changed.wait_for(lock, std::chrono::minutes(1), [&] { return counts[queue][code] >= count; });
}

long count(spi::_qid queue, spi::event_code code) {
    const std::lock_guard<std::mutex> lock(mutex);
    return counts[queue][code];
}

}  // namespace arrivals

extern "C" {
int __real__ZN3spi10event_proc10post_eventENS_5eventE(spi::event_proc* self, spi::event e);
void __real__ZN3spi10event_proc6appendERNSt7__cxx114listINS_5eventESaIS3_EEE(spi::event_proc* self,
                                                                             std::list<spi::event>& events);

int __wrap__ZN3spi10event_proc10post_eventENS_5eventE(spi::event_proc* self, spi::event e) {
    const spi::_qid queue = self->queue_id();
    posted one;
    ++one.of[e.code()];
    const int result = __real__ZN3spi10event_proc10post_eventENS_5eventE(self, std::move(e));
    note(queue, one);
    return result;
}

void __wrap__ZN3spi10event_proc6appendERNSt7__cxx114listINS_5eventESaIS3_EEE(spi::event_proc* self,
                                                                             std::list<spi::event>& events) {
    const spi::_qid queue = self->queue_id();
    posted all;
    for (const spi::event& e : events)
        ++all.of[e.code()];
    __real__ZN3spi10event_proc6appendERNSt7__cxx114listINS_5eventESaIS3_EEE(self, events);
    note(queue, all);
}
}

#include "tests/faults/arrivals.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

#include "src/event/event_proc.h"

namespace {

std::mutex mutex;
std::condition_variable changed;
long counts[spi::QID_MAX + 1][spi::EC_MAX + 1];  // guarded by mutex

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

extern "C" int __real__ZN3spi10event_proc10post_eventENS_5eventE(spi::event_proc* self, spi::event e);

extern "C" int __wrap__ZN3spi10event_proc10post_eventENS_5eventE(spi::event_proc* self, spi::event e) {
    const spi::_qid queue = self->queue_id();
    const spi::event_code code = e.code();
    const int result = __real__ZN3spi10event_proc10post_eventENS_5eventE(self, std::move(e));
    const std::lock_guard<std::mutex> lock(mutex);
    ++counts[queue][code];
    changed.notify_all();
    return result;
}

// The queue of one worker: first in, first out, unbounded, without priorities.
#pragma once

#include <atomic>
#include <list>
#include <mutex>
#include <utility>

#include "src/event/event.h"

namespace spi {

// Any thread may call the operations. The mutex is held only while events are linked or unlinked, never while
// a handler runs. What moves whole lists needs no memory.
class event_queue {
 public:
    // Empty.
    explicit event_queue(_qid id) : id_(id) {}
    event_queue(const event_queue&) = delete;
    event_queue& operator=(const event_queue&) = delete;

    // The name under which it is found.
    _qid id() const { return id_; }

    // Copies the event to the tail, sharing its payload. Always 0.
    int post_event(event& e) { return post_event(event(e)); }
    // The same for an event that is not needed any more. Its place is made before the mutex is taken.
    int post_event(event&& e) {
        std::list<event> one;
        one.push_back(std::move(e));
        append(one);
        return 0;
    }

    // Moves all of `events` to the tail, in their order, and leaves `events` empty.
    void append(std::list<event>& events) noexcept {
        const std::lock_guard<std::mutex> lock(mutex_);
        events_.splice(events_.end(), events);
    }
    // Moves them to the head: they were taken and not handled.
    void put_back(std::list<event>& events) noexcept {
        const std::lock_guard<std::mutex> lock(mutex_);
        events_.splice(events_.begin(), events);
    }

    // Moves all that there is to `taken`, which is empty. While there is nothing, `wait` is called with the
    // locked mutex, to wait for a change. Where it says false, that is the result.
    template <class Wait>
    bool take_all(std::list<event>& taken, Wait wait) {
        std::unique_lock<std::mutex> lock(mutex_);
        while (events_.empty()) {
            if (!wait(lock)) return false;
        }
        taken.swap(events_);
        return true;
    }

    // Clears `running` and tells whether it was set. Under the mutex: `wait` of take_all can test it, and
    // does not miss the notification that follows.
    bool stop(std::atomic<bool>& running) {
        const std::lock_guard<std::mutex> lock(mutex_);
        return running.exchange(false);
    }

 private:
    const _qid id_;
    std::list<event> events_;  // guarded by mutex_
    std::mutex mutex_;
};

}  // namespace spi

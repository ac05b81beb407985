// The queue of one worker: first in, first out, unbounded, without priorities.
#pragma once

#include <list>
#include <mutex>

#include "src/event/event.h"

namespace spi {

// Any thread may post. The mutex is held only while events are linked or unlinked, never while a handler
// runs.
class event_queue {
 public:
    // Empty.
    explicit event_queue(_qid id) : id_(id) {}
    event_queue(const event_queue&) = delete;
    event_queue& operator=(const event_queue&) = delete;

    // The name under which it is found.
    _qid id() const { return id_; }

    // Copies the event to the tail, sharing its payload. Always 0.
    int post_event(event& e) {
        const std::lock_guard<std::mutex> lock(mutex_);
        events_.push_back(e);
        return 0;
    }

 private:
    friend class event_proc;  // the worker that serves this queue, and that posts together with a look at its
                              // own state

    const _qid id_;
    std::list<event> events_;  // guarded by mutex_
    std::mutex mutex_;
};

}  // namespace spi

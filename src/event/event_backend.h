// The router: takes events from its queue in their order and hands each to the queue that its destination
// names.
//
// Itself a worker (QID_SYS) with a thread of its own. Owned by the server. Registration and removal may be
// called on any thread; delivery runs on the router's. The table is guarded by a mutex, in delivery too:
// while the server is being destroyed, workers leave the table as others still send. Delivery only appends to
// the target's queue, so a slow handler never holds the router up.
#pragma once

#include <list>
#include <mutex>
#include <unordered_map>

#include "src/event/event_proc.h"

namespace spi {

class event_backend : public event_proc {
 public:
    // What register_queue returns: done; the table did not take it; the identifier has a worker already.
    enum register_result : int { kRegistered = 0, kInsertionFailed = 1, kAlreadyRegistered = 2 };
    // What unregister_queue returns: done; there is no such worker.
    enum unregister_result : int { kUnregistered = 0, kNotRegistered = 3 };

    // How events that stand together and have the same destination are handed on. In runs: in one piece, and
    // process_event is not asked. For an object of this very class only, and for destinations whose classes
    // take runs; a derived class would miss what it overrides.
    enum forwarding { kOneAtATime, kInRuns };

    // Starts the thread, and opens its gate: derived classes take the other constructor.
    explicit event_backend(forwarding how = kOneAtATime);
    // Stops the thread and empties the table; the workers in it are not deleted.
    ~event_backend() override;

    // QID_NONE: dropped. QID_ALL: every registered worker gets a copy (the router itself is not in its
    // table). Otherwise the named worker; a destination that is not registered is logged and the event
    // dropped.
    void process_event(event& e) override;

    // Makes `proc` reachable, and able to send. kAlreadyRegistered keeps the worker that was there first.
    virtual int register_queue(event_proc* proc);
    // `destroy` deletes the worker, which stops its thread. An identifier that is not registered is logged.
    virtual int unregister_queue(_qid id, bool destroy);

    // Whether a worker is registered under `id`.
    bool is_registered(_qid id);

    // True when EC_TERM, or an answer to it, got lost for want of memory.
    bool lost_an_answer() const { return event_proc::lost_an_answer(); }

 protected:
    // For classes derived from this one, which call begin() themselves.
    explicit event_backend(deferred);

 private:
    friend class event_proc;  // its loop, on the router's thread

    // Moves the first of `events`, and those behind it that have the same destination, to that worker's
    // queue: nodes and all, under one lock. False, and nothing is moved, when each must be handled by itself:
    // a broadcast, no destination, no such worker, or one whose class does not take runs.
    bool forward_run(std::list<event>& events);

    // Recursive: a dead worker's answer to EC_TERM passes a dead router within the delivery that it answers.
    std::recursive_mutex table_mutex_;
    std::unordered_map<_qid, event_proc*> table_;  // guarded by table_mutex_; the workers are not owned
};

}  // namespace spi

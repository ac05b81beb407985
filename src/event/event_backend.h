// The router: takes events from its queue in their order and hands each to the queue that its destination
// names.
//
// Itself a worker (QID_SYS) with a thread of its own. Owned by the server. Registration and removal may be
// called on any thread; delivery runs on the router's, and takes the table's mutex too: while the server is
// being destroyed, workers leave the table as others still send. A slow handler never holds the router up.
#pragma once

#include <atomic>
#include <functional>
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

    // Starts the thread, and opens its gate: derived classes take the other constructor.
    event_backend();
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

    // An EC_TERM, or an answer to one, got lost for want of memory: somebody may be waiting for it. Any
    // thread.
    void note_lost_answer() noexcept;
    // Whether that has happened. Any thread.
    bool lost_an_answer() const { return lost_answer_; }

 protected:
    // For classes derived from this one, which call begin(*this). `pass_on`: see
    // worker_duties::handle_together; it may be empty.
    explicit event_backend(std::function<bool(std::list<event>& batch)> pass_on);

    // The worker registered under `id`, or null. table_mutex_ is held as long as the worker is used.
    event_proc* find(_qid id) const;

    // Recursive: an ended worker's answer to EC_TERM passes an ended router within the delivery that it
    // answers.
    std::recursive_mutex table_mutex_;

 private:
    void pass_on_when_ended(event& request, bool in_hand) noexcept;

    // Guarded by table_mutex_; the workers are not owned. More buckets than there are workers.
    std::unordered_map<_qid, event_proc*> table_{10};
    std::atomic<bool> lost_answer_{false};
};

}  // namespace spi

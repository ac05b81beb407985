// What a worker needs besides its queue and its thread: the gate at which the thread waits until the object
// is complete, what is owed when the thread has ended, and what its class does otherwise than the rest.
#pragma once

#include <atomic>
#include <functional>
#include <list>
#include <utility>

#include "src/event/event.h"
#include "src/event/event_queue.h"
#include "src/event/monitor.h"

namespace spi {

// What a class does otherwise than event_proc, said when it is constructed. Each may be empty.
struct worker_duties {
    // On the worker's thread: handles what stands first in a batch of taken events, several of them at once,
    // and removes it. False, and nothing is removed, when the first is to be handled by itself.
    std::function<bool(std::list<event>& batch)> handle_together;
    // In place of the worker's thread, which has ended: an EC_TERM that nobody will handle. `in_hand`: its
    // handler ended the thread. On the thread of whoever notices; must not throw. Empty: one EC_TERM goes to
    // the server.
    std::function<void(event& request, bool in_hand)> answer_for_ended;
    // On the worker's thread as it leaves, in whatever way; must not throw. Never called when the thread did
    // not start.
    std::function<void()> thread_ended;
};

class worker_lifecycle {
 public:
    // With the gate closed.
    worker_lifecycle(_qid id, worker_duties what_differs)
        : duties(std::move(what_differs)), unhandled_when_ended(id) {}

    // As the constructor was told.
    const worker_duties duties;

    // ---- the gate ----

    // The object is complete. `batches`: see takes_batches.
    void open_gate(bool batches) {
        takes_batches = batches;
        complete_ = true;
        gate_.announce();
    }
    // Waits until the gate is open: true. False: `running` was cleared, and tell_gate called, before.
    bool wait_at_gate(const std::atomic<bool>& running) {
        gate_.wait([&] { return complete_ || !running; });
        return complete_;
    }
    // See wait_at_gate.
    void tell_gate() noexcept { gate_.announce(); }

    // Several events may be queued at once: the class is known not to override post_event.
    std::atomic<bool> takes_batches{false};

    // ---- on the way ----

    // The thread waits for events. Changed by the thread, under the queue's mutex: whoever appends something
    // while it waits sees it.
    std::atomic<bool> asleep{false};
    // The code of the event that the thread handles next, as far as it has taken one.
    std::atomic<event_code> next_code{EC_NONE};
    // The list node of the event in hand, for what its handler sends; one at most. The thread only.
    std::list<event> spare_node;

    // ---- the end ----

    // No thread takes events any more, though the worker was not stopped.
    std::atomic<bool> ended{false};
    // An EC_TERM is in hand, and was not answered yet.
    std::atomic<bool> owes_answer{false};
    // What was queued when the thread had ended, looked through for EC_TERM.
    event_queue unhandled_when_ended;

 private:
    monitor gate_;
    std::atomic<bool> complete_{false};
};

}  // namespace spi

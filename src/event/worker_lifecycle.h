// What a worker needs besides its queue and its thread.
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
    // On any thread: an EC_TERM that the worker's thread, which has ended, will not handle; `in_hand`: its
    // handler ended the thread. Must not throw. Empty: one EC_TERM goes to the server.
    std::function<void(event& request, bool in_hand)> answer_for_ended;
    // On the worker's thread as it leaves, in whatever way; must not throw. Never called when the thread did
    // not start.
    std::function<void()> thread_ended;
};

// The one member of event_proc behind its queue and its thread.
struct worker_lifecycle {
    // With the gate closed.
    explicit worker_lifecycle(worker_duties what_differs) : duties(std::move(what_differs)) {}

    const worker_duties duties;  // empty: as event_proc does

    // ---- set when the gate opens ----
    std::atomic<bool> complete{false};       // the object is: the thread may go on
    std::atomic<bool> takes_batches{false};  // see event_proc
    monitor gate;                            // announced when it opens, and when the worker is stopped

    // ---- the thread only ----
    std::list<event> taken;       // from the queue, and not handled yet
    std::list<event> spare_node;  // of the event in hand, for what its handler sends; one at most

    // ---- any thread ----
    // The thread waits for events. Changed under the queue's mutex: whoever appends while it waits sees it.
    std::atomic<bool> asleep{false};
    std::atomic<bool> ended{false};              // no thread takes events, though it was not stopped
    std::atomic<bool> owes_answer{false};        // an EC_TERM is in hand, and was not answered yet
    event_queue unhandled_when_ended{QID_NONE};  // its EC_TERMs were answered
};

}  // namespace spi

// A worker: one event queue, served by one thread of its own, one event at a time, in the order of arrival.
// Everything active in the library is one. Workers never call each other; they send events through the
// router.
//
// Taking. The thread takes all that its queue holds under one lock, and handles it without any. What it has
// not handled when it leaves, stopped or by an exception, goes back to the queue's head.
//
// Deriving. The thread is created by the base constructor, and would call pre() and process_event() of
// whatever class is under construction: a data race. So it first waits at a gate:
//   - the public constructor opens it at once; for a bare worker (and for classes whose author accepts that
//     pre() may run before their constructor has finished);
//   - the protected constructor leaves it closed, and the class that is complete calls begin(*this) as the
//     last statement of its constructor. "The constructor returned" then means "the thread serves".
// A derived destructor runs while the thread still lives: it begins with destroy_proc(), or handlers run on
// members that are gone.
//
// Dying. An exception that leaves a handler is reported on the debug channel and ends the worker's thread; it
// is not restarted, and what is posted to it is kept. Only EC_TERM is still answered, on its behalf, once for
// each: the server's destructor waits for that. The same holds where the thread could not be created.
#pragma once

#include <atomic>
#include <condition_variable>
#include <list>
#include <memory>
#include <type_traits>

#include "src/event/event.h"
#include "src/event/event_queue.h"
#include "src/event/my_thread.h"
#include "src/event/worker_lifecycle.h"

template <class B>
class ZebThread;

namespace spi {

class event_backend;

class event_proc {
 public:
    // A bare worker that serves the queue `id`: the gate opens at once.
    explicit event_proc(_qid id);
    event_proc(const event_proc&) = delete;
    event_proc& operator=(const event_proc&) = delete;

    // Hook on the worker's own thread, before its first event. Does nothing here.
    virtual void pre();
    // Hook on the worker's own thread, after its last event. Does nothing here.
    virtual void post();

    // Handles one event, on the worker's own thread. Here: answers EC_TERM with one EC_TERM to the server,
    // ignores the rest.
    virtual void process_event(event& e);

    // Stops the thread; what is still queued is released unhandled.
    virtual ~event_proc();

    // Queues an event and wakes the worker. Any thread may call it. Always 0.
    virtual int post_event(event e);

    // Into this worker's own queue, whatever the destination: on the router, that routes it.
    int post(std::shared_ptr<i_evt_base> payload, _qid destination);

    // Through the router; never waits for the receiver. 1, and the payload is dropped, before this worker is
    // registered with a router; otherwise 0.
    int send(std::shared_ptr<i_evt_base> payload, _qid destination);

    // Queues all of `batch`, in its order, and leaves it empty: at once and without memory, or each by
    // post_event.
    void post_batch(std::list<event>& batch);
    // Whether batches are queued at once: the class is known not to override post_event.
    bool takes_batches() const { return more_.takes_batches; }

    // Stops the thread and waits until it has ended (beyond 10 s that is reported). Events still queued stay
    // there. A second call does nothing.
    void destroy_proc();

    // The queue that this worker serves.
    _qid queue_id() const { return queue_.id(); }

    // The router by which this worker sends; not owned, null before registration.
    event_backend* backend() const { return backend_; }
    // For the router only, when it registers the worker.
    void set_backend(event_backend* router) { backend_ = router; }

 protected:
    // For derived classes: the gate stays closed until begin().
    event_proc(_qid id, worker_duties what_differs);

    // Opens the gate. Called with *this by the class of which the object is. The compiler sees whether it
    // takes batches: a final class that leaves post_event as it is.
    template <class Complete>
    void begin(Complete&) {
        using own = decltype(post_event_of<Complete>(0));
        open_gate(std::is_final_v<Complete> && std::is_same_v<own, int (event_proc::*)(event)>);
    }

    // Whether the thread could be created.
    bool started() const { return started_; }

    // On the worker's thread, in a handler: whether the next event has been taken already, and has this code.
    bool follows(event_code code) const { return !more_.taken.empty() && more_.taken.front().code() == code; }
    // See outbox.
    std::list<event>& spare_node() { return more_.spare_node; }

 private:
    // Only the type of its result is used: of the class's post_event, or void where that is private or more
    // than one.
    template <class Complete>
    static decltype(&Complete::post_event) post_event_of(int);
    template <class Complete>
    static void post_event_of(...);

    void open_gate(bool takes_batches);
    void run();
    void serve();
    void handle_taken();
    void handle_request(event& e);
    void wake_up();
    void answer(event& request, bool in_hand);
    void answer_requests();

    event_queue queue_;
    event_backend* backend_ = nullptr;  // null until registration; not owned
    std::condition_variable wake_;      // with the queue's mutex
    std::atomic<bool> running_{true};   // cleared under the queue's mutex
    std::unique_ptr<ZebThread<my_thread<event_proc>>> thread_;
    my_thread<event_proc> binding_;
    bool started_ = false;  // the constructing, later the destroying thread only
    worker_lifecycle more_;
};

}  // namespace spi

// A worker: one event queue, served by one thread of its own, one event at a time, in the order of arrival.
// Everything active in the library is one. Workers never call each other; they send events through the
// router.
//
// Taking. The thread takes whatever its queue holds under one lock, and handles it without any. Between two
// events it looks whether it has been stopped; what it has then taken and not handled goes back to the
// queue's head, as it does when a handler throws. So nobody can tell from outside that it had left the queue.
//
// Sending. What a handler sends is in the router's queue when send() returns. Two classes whose handlers do
// nothing that others see but send, the parser and the database, collect it instead: it reaches the router
// when the turn ends, or when a good many events have gathered: one lock and one wake-up for all of them,
// instead of the router being woken for each and asleep again before the next. Order is kept, and so is what
// was sent before a handler threw.
//
// Deriving. The thread is created by the base constructor, when the derived object does not exist yet. If it
// went on at once it would call pre() and process_event() of the base, or of whatever class is under
// construction: a data race, and in the server's case a termination lock that nobody took. So the thread
// first waits at a gate:
//   - the public constructor opens the gate at once; it is for a bare worker (and for classes whose author
//     accepts that pre() may run before their constructor has finished);
//   - the protected constructor leaves it closed, and the class that is complete calls begin() as the last
//     statement of its constructor. "The constructor returned" then means "the thread serves". Such a class
//     should be final, or pass the choice on to the classes derived from it.
// In the same way a derived destructor runs while the thread still lives: it begins with destroy_proc(), or
// handlers run on members that are gone.
//
// Dying. An exception that leaves a handler is reported on the debug channel and ends the worker's thread; it
// is not restarted and its queue keeps what is posted to it. Only EC_TERM is still answered, on its behalf,
// once for each: the server's destructor waits for these answers. The same holds for a worker whose thread
// could not be created.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <list>
#include <memory>
#include <thread>

#include "src/event/event.h"
#include "src/event/event_queue.h"
#include "src/event/my_thread.h"

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

    // Puts an event into this worker's own queue, whatever destination it names: on the router, that routes
    // it.
    int post(std::shared_ptr<i_evt_base> payload, _qid destination);

    // Sends an event through the router; never waits for its receiver. 1, and the payload is dropped, before
    // this worker is registered with a router; otherwise 0. On the own thread of a worker that collects, the
    // event leaves with the others of its turn.
    int send(std::shared_ptr<i_evt_base> payload, _qid destination);

    // Stops the thread and waits until it has ended (a wait of more than 10 s is reported, and goes on).
    // Events still queued stay there. A second call does nothing.
    void destroy_proc();

    // The queue that this worker serves.
    _qid queue_id() const { return queue_.id(); }

 protected:
    // What is called on the worker's thread as it leaves, in whatever way. Never called when the thread did
    // not start.
    using thread_end_hook = void (*)(event_proc&) noexcept;

    // What a class says of itself, to make hand-offs cheaper. One that says nothing gets each event by
    // itself, and each of its results leaves as it is sent.
    enum manner : std::uint8_t {
        kOneByOne = 0,
        // post_event is not overridden: several events may be queued at once.
        kTakesRuns = 1,
        // Handlers wait for nothing, and do nothing that others see but send: what they send may wait until
        // the turn ends.
        kCollects = 2,
        // As well, they are short: what they send may wait while events of the same code follow.
        kKeepsResults = 4,
    };
    // Chooses the constructor for derived classes.
    struct deferred {
        unsigned manners;  // of manner, combined
        // For a class with these manners.
        explicit deferred(unsigned combined = kOneByOne) : manners(combined) {}
    };
    // For derived classes: the gate stays closed until begin(). `hook` may be null.
    event_proc(_qid id, deferred, thread_end_hook hook = nullptr);
    // Opens the gate: the object is complete.
    void begin();

    // Whether the thread could be created.
    bool started() const { return started_; }
    // True on this router when an EC_TERM, or the answer to one, was lost for want of memory: somebody may be
    // waiting for an answer that never comes.
    bool lost_an_answer() const { return lost_answer_; }

 private:
    friend class event_backend;  // sets backend_, appends runs

    class work_in_hand;

    // event_backend only, with none of its operations overridden: it forwards several at once.
    static constexpr std::uint8_t kRoutesRuns = 8;

    void run();
    void serve();
    bool is(unsigned what) const { return (manners_ & what) != 0; }
    // Appends all, and leaves `events` empty; no memory is needed. Wakes the worker if it sleeps.
    void append(std::list<event>& events);
    // Waits for events and takes all there are; false when the worker was stopped instead.
    bool take(std::list<event>& events);
    void give_back(std::list<event>& events) noexcept;
    void thread_died() noexcept;
    void answer_terms_for_the_dead(std::list<event>::iterator first, std::size_t count) noexcept;
    void answer_term_for_the_dead(event& e) noexcept;
    void note_lost_answer() noexcept;

    event_queue queue_;
    event_backend* backend_ = nullptr;  // null until registration; not owned
    std::condition_variable wake_;
    std::atomic<bool> running_{true};  // changed under the queue's mutex; its own thread reads it without
    // The thread waits for events, and nobody has woken it yet; guarded by the queue's mutex. Who finds it
    // awake need not notify it.
    bool asleep_ = false;
    const std::uint8_t manners_;  // of manner
    std::unique_ptr<ZebThread<my_thread<event_proc>>> thread_;
    my_thread<event_proc> binding_;
    bool started_ = false;  // the constructing, later the destroying thread only

    bool gate_open_;  // guarded by the queue's mutex
    // No thread will take events any more, though not stopped; guarded by the queue's mutex.
    bool dead_ = false;
    bool answering_term_ = false;  // this worker's thread only
    const thread_end_hook thread_end_hook_;
    std::atomic<bool> lost_answer_{false};
    // Of a class that collects, while it serves: its thread, and what that has in hand. Not thread-local
    // storage: a library that is loaded late gets that from the heap, at each thread's first use, and the
    // process ends where there is no memory.
    std::atomic<std::thread::id> collecting_{};
    work_in_hand* in_hand_ = nullptr;  // that thread only
};

}  // namespace spi

#include "src/event/event_proc.h"

#include <utility>

#include "platform/zeb_thread.h"
#include "src/event/event_backend.h"
#include "src/event/teardown.h"
#include "src/event/term_event.h"
#include "src/event/work_in_hand.h"

namespace spi {
namespace {

constexpr const char* kThreadName = "dabspi";
constexpr int kThreadRegistryValue =
    4000;                            // handed to the framework's thread registry, which knows its meaning
constexpr int kExitTimeout = 10000;  // milliseconds

}  // namespace

event_proc::event_proc(_qid id) : event_proc(id, deferred{}) {
    begin();
}

event_proc::event_proc(_qid id, deferred how, thread_end_hook hook)
    : queue_(id),
      manners_(static_cast<std::uint8_t>(how.manners)),
      binding_{this, &event_proc::run},
      gate_open_(false),
      thread_end_hook_(hook) {
    thread_ =
        std::make_unique<ZebThread<my_thread<event_proc>>>(&binding_, kThreadName, kThreadRegistryValue);
    started_ = thread_->Start();
    if (!started_) {
        const std::lock_guard<std::mutex> lock(queue_.mutex_);
        dead_ = true;
    }
}

event_proc::~event_proc() {
    destroy_proc();
    std::list<event> unhandled;
    {
        const std::lock_guard<std::mutex> lock(queue_.mutex_);
        unhandled.swap(queue_.events_);
    }
}

void event_proc::begin() {
    {
        const std::lock_guard<std::mutex> lock(queue_.mutex_);
        gate_open_ = true;
    }
    wake_.notify_all();
}

void event_proc::pre() {}
void event_proc::post() {}

void event_proc::process_event(event& e) {
    if (e.code() != EC_TERM) return;
    if (queue_.id() == QID_SERV) {
        post(std::make_shared<term_event>(), QID_SERV);
    } else {
        send(std::make_shared<term_event>(), QID_SERV);
    }
}

int event_proc::post_event(event e) {
    std::list<event> one;  // made before the lock is taken
    one.push_back(std::move(e));
    append(one);
    return 0;
}

void event_proc::append(std::list<event>& events) {
    const auto first = events.begin();
    const std::size_t count = events.size();
    bool sleeper = false;
    bool dead = false;
    {
        // With a look at dead_ under the same lock: an EC_TERM is answered either here or by thread_died,
        // never twice.
        const std::lock_guard<std::mutex> lock(queue_.mutex_);
        queue_.events_.splice(queue_.events_.end(), events);
        sleeper = std::exchange(asleep_, false);
        dead = dead_;
    }
    if (sleeper) wake_.notify_all();
    if (dead) answer_terms_for_the_dead(first, count);
}

bool event_proc::take(std::list<event>& events) {
    std::unique_lock<std::mutex> lock(queue_.mutex_);
    while (running_ && queue_.events_.empty()) {
        asleep_ = true;
        wake_.wait(lock);
    }
    asleep_ = false;
    if (!running_) return false;
    events.swap(queue_.events_);
    return true;
}

void event_proc::give_back(std::list<event>& events) noexcept {
    const std::lock_guard<std::mutex> lock(queue_.mutex_);
    queue_.events_.splice(queue_.events_.begin(), events);
}

int event_proc::post(std::shared_ptr<i_evt_base> payload, _qid destination) {
    return post_event(event(destination, std::move(payload)));
}

int event_proc::send(std::shared_ptr<i_evt_base> payload, _qid destination) {
    if (backend_ == nullptr) return 1;
    event e(destination, std::move(payload));
    if (work_in_hand* const own = work_in_hand::of(*this)) {
        own->add_result(std::move(e));
        return 0;
    }
    return backend_->post_event(std::move(e));
}

void event_proc::destroy_proc() {
    {
        // Under the mutex: a worker between its test and its wait would miss the notification.
        const std::lock_guard<std::mutex> lock(queue_.mutex_);
        if (!running_) return;
        running_ = false;
    }
    wake_.notify_all();
    if (started_ && thread_) {
        thread_->WaitExit(kExitTimeout);
        started_ = false;
    }
}

// The thread's body. However it is left, by its end, an exception or the thread's cancellation, `leaving`
// sees it.
void event_proc::run() {
    struct leaving {
        event_proc& worker;
        bool regular = false;
        ~leaving() {
            if (!regular) worker.thread_died();
            if (worker.thread_end_hook_ != nullptr) worker.thread_end_hook_(worker);
            teardown_monitor().announce();
        }
    } leave{*this};

    {
        std::unique_lock<std::mutex> lock(queue_.mutex_);
        wake_.wait(lock, [this] { return gate_open_ || !running_; });
        if (!gate_open_) {  // stopped before it was complete: neither pre() nor post() may be called
            leave.regular = true;
            return;
        }
    }
    serve();
    leave.regular = true;
}

void event_proc::serve() {
    pre();
    {
        work_in_hand work(*this);
        while (take(work.taken)) {
            while (running_.load(std::memory_order_relaxed) && !work.taken.empty()) {
                if (is(kRoutesRuns) && static_cast<event_backend*>(this)->forward_run(work.taken)) continue;
                event e = work.next();
                if (e.code() == EC_NONE) continue;  // no payload, or one that says nothing
                answering_term_ = e.code() == EC_TERM;
                process_event(e);
                answering_term_ = false;
                work.end_turn(e.code());
                // The payload is released here, at the end of its turn, before the next one.
            }
        }
    }
    post();
}

// On the dying thread. From here on whoever posts an EC_TERM answers it; those that were there before are
// answered now, and so is the one whose handler failed.
void event_proc::thread_died() noexcept {
    std::list<event>::iterator first;
    std::size_t count = 0;
    {
        const std::lock_guard<std::mutex> lock(queue_.mutex_);
        dead_ = true;
        first = queue_.events_.begin();
        count = queue_.events_.size();
    }
    // A worker that dies of the EC_TERM in hand has not answered it: the answer is the last that a handler
    // does. (The router answers nothing, it passes on; what it had in hand is lost, and said to be.)
    if (answering_term_) {
        if (queue_.id() == QID_SYS) {
            note_lost_answer();
        } else {
            event in_hand(queue_.id(), nullptr);
            answer_term_for_the_dead(in_hand);
        }
    }
    answer_terms_for_the_dead(first, count);
}

// `count` events of a dead worker's queue. They stay where they are: nobody takes from it any more. The step
// behind the last of them is not made: its link belongs to whoever posts next.
void event_proc::answer_terms_for_the_dead(std::list<event>::iterator first, std::size_t count) noexcept {
    while (count > 0) {
        if (first->code() == EC_TERM) answer_term_for_the_dead(*first);
        if (--count > 0) ++first;
    }
}

// A dead router passes an EC_TERM on, on the thread of whoever notices; any other worker's answer is sent in
// its name.
void event_proc::answer_term_for_the_dead(event& e) noexcept {
    try {
        if (queue_.id() == QID_SYS) {
            process_event(e);
        } else if (queue_.id() != QID_SERV) {  // nobody waits for an answer of the server to itself
            event term(queue_.id(), std::make_shared<term_event>());
            event_proc::process_event(term);
        }
    } catch (...) {
        note_lost_answer();
    }
}

void event_proc::note_lost_answer() noexcept {
    (backend_ != nullptr ? static_cast<event_proc*>(backend_) : this)->lost_answer_ = true;
    teardown_monitor().announce();
}

}  // namespace spi

#include "src/event/event_proc.h"

#include <utility>

#include "platform/zeb_thread.h"
#include "src/event/event_backend.h"
#include "src/event/teardown.h"
#include "src/event/term_event.h"

namespace spi {
namespace {

constexpr const char* kThreadName = "dabspi";
constexpr int kThreadRegistryValue = 4000;  // the framework's thread registry knows its meaning
constexpr int kExitTimeout = 10000;         // milliseconds

}  // namespace

event_proc::event_proc(_qid id) : event_proc(id, worker_duties{}) {
    open_gate(false);
}

event_proc::event_proc(_qid id, worker_duties what_differs)
    : queue_(id), binding_{this, &event_proc::run}, more_(std::move(what_differs)) {
    thread_ =
        std::make_unique<ZebThread<my_thread<event_proc>>>(&binding_, kThreadName, kThreadRegistryValue);
    started_ = thread_->Start();
    if (!started_) more_.ended = true;
}

event_proc::~event_proc() {
    destroy_proc();
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
    const int result = queue_.post_event(std::move(e));
    wake_up();
    return result;
}

void event_proc::post_batch(std::list<event>& batch) {
    if (takes_batches()) {
        queue_.append(batch);
        return wake_up();
    }
    for (; !batch.empty(); batch.pop_front())
        post_event(std::move(batch.front()));
}

// Who has posted something wakes only a sleeper. Where no thread will come for it, he looks after it himself.
void event_proc::wake_up() {
    if (more_.asleep) wake_.notify_all();
    if (more_.ended) answer_requests();
}

int event_proc::post(std::shared_ptr<i_evt_base> payload, _qid destination) {
    return post_event(event(destination, std::move(payload)));
}

int event_proc::send(std::shared_ptr<i_evt_base> payload, _qid destination) {
    if (backend_ == nullptr) return 1;
    event e(destination, std::move(payload));
    const bool is_answer = destination == QID_SERV && e.code() == EC_TERM;
    const int result = backend_->post_event(std::move(e));
    if (is_answer) more_.owes_answer = false;
    return result;
}

void event_proc::destroy_proc() {
    if (!queue_.stop(running_)) return;
    more_.gate.announce();
    wake_.notify_all();
    if (started_) thread_->WaitExit(kExitTimeout);
    started_ = false;
}

void event_proc::open_gate(bool takes_batches) {
    more_.takes_batches = takes_batches;
    more_.complete = true;
    more_.gate.announce();
}

// The thread's body. However it is left, by its end, an exception or the thread's cancellation, `leaving`
// sees it.
void event_proc::run() {
    struct leaving {
        event_proc& worker;
        bool regular = false;
        ~leaving() {
            worker.queue_.put_back(worker.more_.taken);
            if (!regular) {
                worker.more_.ended = true;
                worker.answer_requests();
            }
            if (worker.more_.duties.thread_ended) worker.more_.duties.thread_ended();
            teardown_monitor().announce();
        }
    } leave{*this};

    more_.gate.wait([this] { return more_.complete || !running_; });
    if (more_.complete) serve();  // else stopped before: neither pre() nor post() may be called
    leave.regular = true;
}

void event_proc::serve() {
    pre();
    const auto wait = [this](std::unique_lock<std::mutex>& lock) {
        more_.asleep = true;
        if (running_) wake_.wait(lock);
        more_.asleep = false;
        return running_.load();
    };
    while (running_ && queue_.take_all(more_.taken, wait))
        handle_taken();
    post();
}

void event_proc::handle_taken() {
    std::list<event>& taken = more_.taken;
    while (running_.load(std::memory_order_relaxed) && !taken.empty()) {
        if (more_.duties.handle_together && more_.duties.handle_together(taken)) continue;
        event e = std::move(taken.front());
        if (more_.spare_node.empty()) {
            more_.spare_node.splice(more_.spare_node.begin(), taken, taken.begin());
        } else {
            taken.pop_front();
        }
        if (e.code() == EC_TERM) {
            handle_request(e);
        } else if (e.code() != EC_NONE) {  // without a payload, or one that says nothing: dropped
            process_event(e);
        }
        // The payload is released here, at the end of its turn, before the next one.
    }
}

// A handler that throws may have answered before.
void event_proc::handle_request(event& e) {
    more_.owes_answer = true;
    try {
        process_event(e);
    } catch (...) {
        if (more_.owes_answer) answer(e, true);
        throw;
    }
    more_.owes_answer = false;
}

// An EC_TERM that no handler answers.
void event_proc::answer(event& request, bool in_hand) {
    if (more_.duties.answer_for_ended) return more_.duties.answer_for_ended(request, in_hand);
    if (queue_.id() == QID_SERV) return;  // nobody waits for an answer of the server to itself
    try {
        send(std::make_shared<term_event>(), QID_SERV);
    } catch (...) {
        if (backend_ != nullptr) backend_->note_lost_answer();
    }
}

// Of a worker whose thread has ended. Whoever takes an EC_TERM from the queue answers it: nobody else will.
// Everything is kept.
void event_proc::answer_requests() {
    std::list<event> posted;
    if (!queue_.take_all(posted, [](auto&) { return false; })) return;
    for (event& e : posted) {
        if (e.code() == EC_TERM) answer(e, false);
    }
    more_.unhandled_when_ended.append(posted);
}

}  // namespace spi

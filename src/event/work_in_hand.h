// Part of event_proc.cpp: what a worker holds between taking events and handing on what came of them.
#pragma once

#include <atomic>
#include <list>
#include <thread>
#include <utility>

#include "src/event/event_backend.h"
#include "src/event/event_proc.h"

namespace spi {

// Events that the worker's thread has taken, and, of a class that collects, what its handlers have sent. On
// the stack of serve(), and used by that thread only. However serve() is left, results go to the router, and
// events that were not handled back to the queue's head; neither needs memory.
class event_proc::work_in_hand {
 public:
    explicit work_in_hand(event_proc& worker) : worker_(worker) {
        if (!worker.is(kCollects)) return;
        worker.in_hand_ = this;
        worker.collecting_.store(std::this_thread::get_id(), std::memory_order_relaxed);
    }
    ~work_in_hand() {
        if (worker_.is(kCollects)) worker_.collecting_.store({}, std::memory_order_relaxed);
        hand_on();
        if (!taken.empty()) worker_.give_back(taken);
    }
    work_in_hand(const work_in_hand&) = delete;
    work_in_hand& operator=(const work_in_hand&) = delete;

    // That of `worker`, when the calling thread is its own, it collects, and its router takes runs; otherwise
    // null. (The identity is read without order: whoever reads his own has written it himself.)
    static work_in_hand* of(const event_proc& worker) {
        const bool own = worker.collecting_.load(std::memory_order_relaxed) == std::this_thread::get_id();
        return own && worker.backend_->is(kTakesRuns) ? worker.in_hand_ : nullptr;
    }

    // The first of what was taken. Its list node is kept for what its handler sends.
    event next() {
        event e = std::move(taken.front());
        if (spare_node_.empty()) {
            spare_node_.splice(spare_node_.begin(), taken, taken.begin());
        } else {
            taken.pop_front();
        }
        return e;
    }
    void add_result(event&& result) {
        if (spare_node_.empty()) {
            results_.push_back(std::move(result));
        } else {
            spare_node_.front() = std::move(result);
            results_.splice(results_.end(), spare_node_);
        }
        if (results_.size() >= kLongestRun) hand_on();
    }
    void end_turn(event_code handled) {
        if (results_.empty()) return;
        if (worker_.is(kKeepsResults) && !taken.empty() && taken.front().code() == handled) return;
        hand_on();
    }

    std::list<event> taken;

 private:
    void hand_on() {
        if (!results_.empty()) worker_.backend_->append(results_);
    }

    // Enough that the lock and the wake-up do not count, few enough that the others have something to do
    // meanwhile.
    static constexpr std::size_t kLongestRun = 64;

    event_proc& worker_;
    std::list<event> results_;
    std::list<event> spare_node_;  // one at most
};

}  // namespace spi

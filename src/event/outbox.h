// What a worker's handlers send, held back until a turn ends: one lock and one wake-up of the router for all.
// For handlers that wait for nothing, and do nothing that others see but send. On the worker's thread only,
// or on that of whoever calls the handlers directly meanwhile.
#pragma once

#include <list>
#include <memory>
#include <utility>

#include "src/event/event_backend.h"
#include "src/event/event_proc.h"

namespace spi {

class outbox {
 public:
    // `spare_node`: the worker's. Its place serves for what is held back.
    outbox(event_proc& worker, std::list<event>& spare_node) : worker_(worker), spare_node_(spare_node) {}

    // As event_proc::send. Within a turn it waits with the others, where the router takes batches.
    int send(std::shared_ptr<i_evt_base> payload, _qid destination) {
        const event_backend* const router = worker_.backend();
        if (!in_turn_ || router == nullptr || !router->takes_batches())
            return worker_.send(std::move(payload), destination);
        if (spare_node_.empty()) spare_node_.emplace_back();
        spare_node_.front() = event(destination, std::move(payload));
        held_.splice(held_.end(), spare_node_);
        if (held_.size() >= kLargestBatch) flush();
        return 0;
    }

    // One handler's run. What it sends leaves when it ends, in whatever way.
    class turn {
     public:
        // From here on, what is sent waits.
        explicit turn(outbox& results) : results_(results) { results_.in_turn_ = true; }
        ~turn() {
            results_.in_turn_ = false;
            if (!goes_on_) results_.flush();
        }
        turn(const turn&) = delete;

        // At a handler's regular end: what it sent leaves when the next turn ends.
        void go_on() { goes_on_ = true; }

     private:
        outbox& results_;
        bool goes_on_ = false;
    };

    // Sends what is held back. No memory is needed.
    void flush() noexcept {
        if (!held_.empty()) worker_.backend()->post_batch(held_);
    }

 private:
    // So many that the lock and the wake-up do not count, so few that the others have work meanwhile.
    static constexpr std::size_t kLargestBatch = 64;

    event_proc& worker_;
    std::list<event>& spare_node_;
    std::list<event> held_;
    bool in_turn_ = false;
};

}  // namespace spi

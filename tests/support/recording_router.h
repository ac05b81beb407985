// A router that keeps what is sent through it instead of delivering it, so that a worker's handler can be
// called on the test's own thread and its results be looked at.
//
//     recording_router router;
//     spi::SpiEventDb db;
//     router.register_queue(&db);
//     db.handle_programme(service, programme);
//     EXPECT_THAT(router.take_codes(), ElementsAre(Pair(spi::QID_CBHDL, spi::EC_EVTINFO)));
#pragma once

#include <mutex>
#include <utility>
#include <vector>

#include "src/event/event_backend.h"

class recording_router final : public spi::event_backend {
 public:
    recording_router() : event_backend(nullptr) { begin(*this); }
    ~recording_router() override { destroy_proc(); }

    int post_event(spi::event e) override {
        const std::lock_guard<std::mutex> lock(mutex_);
        sent_.push_back(std::move(e));
        return 0;
    }

    // What was sent since the last take(), in order.
    std::vector<spi::event> take() {
        const std::lock_guard<std::mutex> lock(mutex_);
        return std::exchange(sent_, {});
    }

    // take(), as pairs of destination and code.
    std::vector<std::pair<spi::_qid, spi::event_code>> take_codes() {
        std::vector<std::pair<spi::_qid, spi::event_code>> codes;
        for (const spi::event& e : take())
            codes.emplace_back(e.destination, e.code());
        return codes;
    }

 private:
    std::mutex mutex_;
    std::vector<spi::event> sent_;  // guarded by mutex_
};

// The payload of an event, as the class that its code stands for.
template <class Payload>
const Payload& payload_of(const spi::event& e) {
    return dynamic_cast<const Payload&>(*e.payload);
}

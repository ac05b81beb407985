// A router that keeps what is sent through it: a worker's handler runs on the benchmark's own thread, and
// releasing what it made is not timed. Used by one thread; clear() before it is destroyed.
#pragma once

#include <utility>
#include <vector>

#include "src/event/event_backend.h"

namespace bench {

class event_sink final : public spi::event_backend {
 public:
    explicit event_sink(std::size_t capacity) : event_backend(deferred{}) { kept_.reserve(capacity); }
    ~event_sink() override { destroy_proc(); }

    int post_event(spi::event e) override {
        kept_.push_back(std::move(e));
        return 0;
    }
    void clear() { kept_.clear(); }
    std::size_t count() const { return kept_.size(); }

 private:
    std::vector<spi::event> kept_;
};

}  // namespace bench

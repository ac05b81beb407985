// The server's router: events that stand together and have the same destination go there in one piece.
#pragma once

#include <list>

#include "src/event/event_backend.h"

namespace spi {

// Final: process_event is not asked for what goes in one piece, so a derived class could miss what it
// overrides.
class batch_backend final : public event_backend {
 public:
    batch_backend();
    ~batch_backend() override;

 private:
    // The first of `batch`, and those behind it that have the same destination: list nodes and all, under one
    // lock. False, and nothing is moved, when each must be handled by itself: a broadcast, no destination, no
    // such worker, or one whose class overrides post_event.
    bool pass_on(std::list<event>& batch);
};

}  // namespace spi

// The calls of a multiplex, one at a time: frames are read as calls are asked for, so that memory does not
// grow with the input, and a pipe is followed as it comes.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "tools/air/calls/broadcast_calls.h"
#include "tools/air/container/frame_source.h"
#include "tools/air/reception/multiplex_reception.h"
#include "tools/recording/call_source.h"

namespace dabspi::air {

struct calls_options {
    std::string service;  // see broadcast_calls
    delivery which = delivery::every;
    reception_limits limits;
    std::function<bool()> given_up;  // asked now and then; true ends the input
};

class multiplex_calls final : public call_source {
 public:
    // `from` must outlive it.
    multiplex_calls(frame_source& from, const calls_options& options)
        : from_(from),
          given_up_(options.given_up),
          calls_(options.service),
          reception_(calls_, options.which, options.limits) {}

    std::optional<call> next() override;
    std::string error() const override { return calls_.error(); }

    std::uint64_t objects_dropped() const { return calls_.objects_dropped(); }
    const multiplex_reception& reception() const { return reception_; }

 private:
    frame_source& from_;
    std::function<bool()> given_up_;
    broadcast_calls calls_;
    multiplex_reception reception_;
    std::uint64_t frames_ = 0;
    bool finished_ = false;
};

}  // namespace dabspi::air

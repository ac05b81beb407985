// Calls, one at a time, from wherever they come: a recording, or a multiplex that is received.
#pragma once

#include <optional>
#include <string>

#include "tools/recording/recording.h"

namespace dabspi {

class call_source {
 public:
    call_source() = default;
    virtual ~call_source() = default;
    call_source(const call_source&) = delete;
    call_source& operator=(const call_source&) = delete;

    // The next call; nothing at the end. It may have to wait for its input.
    virtual std::optional<call> next() = 0;
    // What ended it early, for the user; else empty.
    virtual std::string error() const { return {}; }
};

// Those of a recording without errors, which must outlive it.
class recorded_calls final : public call_source {
 public:
    explicit recorded_calls(const recording& from) : from_(from) {}
    std::optional<call> next() override {
        return next_ < from_.calls.size() ? std::optional(from_.calls[next_++]) : std::nullopt;
    }

 private:
    const recording& from_;
    std::size_t next_ = 0;
};

}  // namespace dabspi

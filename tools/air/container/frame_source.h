// Anything that gives the frames of a recording, one after another: a reader of one of the containers. One
// thread; nothing is thrown for bad input, which is counted instead.
#pragma once

#include "tools/air/container/container_statistics.h"
#include "tools/air/frame.h"

namespace dabspi::air {

class frame_source {
 public:
    frame_source() = default;
    virtual ~frame_source() = default;
    frame_source(const frame_source&) = delete;
    frame_source& operator=(const frame_source&) = delete;

    // The next frame; false at the end. What the frame before showed is no longer valid then.
    virtual bool next(frame& to) = 0;

    virtual const container_statistics& statistics() const = 0;
    // Bytes of the input that were gone through, for showing progress.
    virtual std::uint64_t position() const = 0;
};

}  // namespace dabspi::air

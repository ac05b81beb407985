// The count that every frame bears, and what is missing by it.
#pragma once

#include <cstdint>
#include <optional>

#include "tools/air/container/container_statistics.h"
#include "tools/air/frame.h"

namespace dabspi::air {

class frame_counter {
 public:
    explicit frame_counter(std::uint16_t modulus) : modulus_(modulus) {}

    // Sets index, count, count_modulus and missing_before of a frame that is handed on, and counts it. A
    // count that cannot be trusted is none: the frame is then taken for the next one.
    void number(frame& of, std::optional<std::uint16_t> count, container_statistics& statistics);

 private:
    std::uint16_t modulus_;
    std::uint64_t frames_ = 0;
    std::uint16_t last_ = 0;
};

}  // namespace dabspi::air

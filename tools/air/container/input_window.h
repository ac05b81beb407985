// The bytes of an input around the place that has been reached: a reader looks ahead as far as it must, and
// goes on. Memory is bounded by the window; nothing is read before it is asked for. One thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "tools/air/container/byte_source.h"

namespace dabspi::air {

class input_window {
 public:
    // The most that see() can be asked for.
    static constexpr std::size_t kMostSeen = 128 * 1024;

    explicit input_window(byte_source& from);

    // What follows: at least `count` bytes unless the input ends before. Ends the validity of earlier views.
    byte_view see(std::size_t count);
    // Goes on; not further than has been seen.
    void skip(std::size_t count);

    // Bytes of the input in front of the current place.
    std::uint64_t position() const { return position_; }

 private:
    void read_until(std::size_t count);

    byte_source& from_;
    std::unique_ptr<std::uint8_t[]> memory_;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    std::uint64_t position_ = 0;
    bool ended_ = false;
};

}  // namespace dabspi::air

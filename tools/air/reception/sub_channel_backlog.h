// The last seconds of one sub-channel. The FIC says late which sub-channels carry SPI: what was sent before
// is then read from here.
//
// Memory: two halves of at most kHalfFrames logical frames and kHalfBytes each. The older half is dropped as
// a whole, so between five and ten seconds are kept, and less of more than 400 kbit/s.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "tools/air/frame.h"

namespace dabspi::air {

class sub_channel_backlog {
 public:
    static constexpr std::size_t kHalfFrames = 209;  // five seconds
    static constexpr std::size_t kHalfBytes = std::size_t{256} * 1024;

    void add(std::uint64_t frame, byte_view sent);
    std::size_t frames() const { return older_.frames.size() + newer_.frames.size(); }

    // Oldest first: take(frame, byte_view).
    template <class Take>
    void for_each(Take take) const {
        for (const half* const of : {&older_, &newer_}) {
            std::size_t at = 0;
            for (const auto& [frame, size] : of->frames) {
                take(frame, byte_view(of->bytes).part(at, size));
                at += size;
            }
        }
    }

 private:
    struct half {
        std::vector<std::uint8_t> bytes;
        std::vector<std::pair<std::uint64_t, std::size_t>> frames;  // number and size
    };
    half older_;
    half newer_;
};

}  // namespace dabspi::air

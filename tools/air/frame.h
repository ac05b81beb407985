// One logical frame of a multiplex: 24 ms of the FIC and of every sub-channel, whatever the recording's form.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tools/spi/byte_view.h"

namespace dabspi::air {

using spi_object::byte_view;

constexpr unsigned kMillisecondsOfFrame = 24;

template <class Number>
double seconds_of(Number frames) {
    return static_cast<double>(frames) * kMillisecondsOfFrame / 1000;
}

struct sub_channel_bytes {
    std::uint8_t id = 0;      // SubChId
    std::uint16_t start = 0;  // in capacity units
    std::uint8_t tpl = 0;     // type and protection level
    byte_view bytes;
};

// The views are of the frame source's memory: valid until its next frame is asked for.
struct frame {
    std::uint64_t index = 0;            // among the frames handed on, from 0
    std::uint16_t count = 0;            // as the frame states it, below count_modulus
    std::uint16_t count_modulus = 250;  // 250 (ETI) or 5,000 (EDI)
    // Logical frames between the one before and this one, as the counts tell: exact modulo count_modulus.
    std::uint32_t missing_before = 0;
    // The recording marks it as such, or a checksum is wrong that was right in this recording before.
    bool damaged = false;
    byte_view fic;  // FIBs of 32 bytes; may be empty
    std::vector<sub_channel_bytes> sub_channels;
};

}  // namespace dabspi::air

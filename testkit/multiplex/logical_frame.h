// What a multiplex sends in 24 ms, and sequences of it, for tests, benchmarks and fuzz seeds.
#pragma once

#include <cstdint>
#include <vector>

#include "testkit/multiplex/checksum.h"

namespace multiplex_builder {

struct sub_channel {
    std::uint8_t id = 0;
    std::uint16_t start = 0;  // capacity units
    std::uint8_t tpl = 0;
    bytes content;  // of a multiple of 8 bytes
};

struct logical_frame {
    std::uint16_t count = 0;  // 0..4999; ETI frames show it modulo 250
    bytes fic;                // empty: none
    std::vector<sub_channel> sub_channels;
    std::uint8_t error_level = 0xFF;  // 0xFF: no error
    std::uint8_t mode = 1;            // MID: 1, 2, 3, and 0 for mode IV
};

// `count` frames counted from `first` on. Their FIC and two sub-channels, of 24 and 48 bytes, hold noise that
// is the same for the same seed.
std::vector<logical_frame> noise_frames(unsigned count, std::uint16_t first = 0, unsigned seed = 1);

}  // namespace multiplex_builder

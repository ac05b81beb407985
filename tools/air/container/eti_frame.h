// One ETI(NI) frame (ETS 300 799): where its parts are, by its header. Pure; nothing is copied.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "tools/spi/byte_view.h"

namespace dabspi::air {

using spi_object::byte_view;

constexpr std::size_t kRawEtiFrame = 6144;
// The most that an 11-bit frame length can say.
constexpr std::size_t kMostEtiFrame = 4 * (2047 + 4);
// Up to the frame characterisation: what a frame's length can be taken from.
constexpr std::size_t kEtiFrameStart = 8;

// FSYNC of even or odd frames behind the ERR byte with which a frame begins.
inline bool is_eti_sync(const std::uint8_t* at) {
    return (at[0] == 0x07 && at[1] == 0x3A && at[2] == 0xB6) ||
           (at[0] == 0xF8 && at[1] == 0xC5 && at[2] == 0x49);
}

struct eti_stream {
    std::uint8_t id = 0;
    std::uint16_t start = 0;  // capacity units
    std::uint8_t tpl = 0;
    byte_view bytes;
};

struct eti_frame {
    bool fits = false;  // false: the frame is shorter than its header says, and nothing below is set
    std::uint8_t error_level = 0;  // ERR; 0xFF: no error
    std::uint8_t count = 0;        // FCT; 0..249 is valid
    byte_view fic;
    std::size_t streams = 0;
    std::array<eti_stream, 127> stream;  // the first `streams`
    byte_view header;                    // FC, STC and MNSC, with their CRC
    byte_view body;                      // MST with its CRC; empty where the frame ends before the CRC
    std::size_t length = 0;              // of the whole frame by its header, up to TIST
    bool length_agrees = false;          // with the frame length field
};

// `whole` begins at the ERR byte and may be longer than the frame.
void read_eti_frame(byte_view whole, eti_frame& to);

}  // namespace dabspi::air

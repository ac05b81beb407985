// One packet of packet mode (EN 300 401, 5.3.2), and the FEC packets between them (5.3.5). Pure functions,
// any thread.
#pragma once

#include <cstddef>
#include <cstdint>

#include "tools/spi/byte_view.h"

namespace dabspi::air {

using spi_object::byte_view;

constexpr std::size_t kCell = 24;  // bytes; packets are one to four cells long
constexpr std::size_t kCellsOfLongestPacket = 4;
constexpr std::uint16_t kPaddingAddress = 0;
constexpr std::uint16_t kFecAddress = 1022;
constexpr std::size_t kFecPackets = 9;  // in a set

struct packet {
    std::uint8_t continuity = 0;  // 0..3
    bool first = false;           // of a data group
    bool last = false;
    std::uint16_t address = 0;  // 0..1023
    bool command = false;
    bool well_formed = false;  // false: the useful length reaches beyond the field; `useful` is then empty
    byte_view useful;
};

// Cells of the packet that begins with this byte: 1..4.
inline std::size_t cells_of_packet(std::uint8_t first_byte) {
    return (first_byte >> 6) + std::size_t{1};
}

// `whole` is a packet of kCell * cells_of_packet() bytes whose CRC is right.
packet read_packet(byte_view whole);

// The counter (0..8) of an FEC packet that stands in this cell, or -1. FEC packets have no CRC: these are 12
// fixed bits and 4 that count, and a data packet's bytes may look the same.
int fec_packet_counter(byte_view cell);

}  // namespace dabspi::air

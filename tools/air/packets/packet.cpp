#include "tools/air/packets/packet.h"

namespace dabspi::air {

namespace {

constexpr std::size_t kPacketHeader = 3;
constexpr std::size_t kPacketCrc = 2;

}  // namespace

packet read_packet(byte_view whole) {
    packet read;
    const std::uint32_t header = whole.number(0, kPacketHeader);
    read.continuity = static_cast<std::uint8_t>(header >> 20 & 3);
    read.first = (header >> 19 & 1) != 0;
    read.last = (header >> 18 & 1) != 0;
    read.address = static_cast<std::uint16_t>(header >> 8 & 0x3FF);
    read.command = (header >> 7 & 1) != 0;
    const std::size_t useful = header & 0x7F;
    read.well_formed =
        whole.size() >= kPacketHeader + kPacketCrc && useful <= whole.size() - kPacketHeader - kPacketCrc;
    if (read.well_formed) read.useful = whole.part(kPacketHeader, useful);
    return read;
}

int fec_packet_counter(byte_view cell) {
    if (cell[1] != (kFecAddress & 0xFF) || (cell[0] & 0xC3) != kFecAddress >> 8) return -1;
    const int counter = cell[0] >> 2 & 0xF;
    return counter < static_cast<int>(kFecPackets) ? counter : -1;
}

}  // namespace dabspi::air

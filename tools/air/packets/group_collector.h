// Joins the packets of each address to data groups (EN 300 401, 5.3.2): continuity, first and last.
//
// Owned by a packet decoder, used on its thread. A group with a lost or repeated packet is dropped, and so is
// one within which so many cells were unreadable that the continuity, which counts modulo 4, may have come
// round. Memory: the groups being collected take at most `memory` bytes together.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "tools/air/packets/packet.h"
#include "tools/air/packets/packet_counts.h"

namespace dabspi::air {

// Receives data groups: the bytes are valid during the call. Repetition is not looked at here.
class data_group_sink {
 public:
    virtual ~data_group_sink() = default;
    virtual void data_group(std::uint16_t address, byte_view group) = 0;
};

class group_collector {
 public:
    group_collector(data_group_sink& sink, packet_counts& counts, std::size_t memory)
        : sink_(sink), counts_(counts), memory_(memory) {}

    // A packet that is neither padding nor FEC. `unreadable` is how many cells of the sub-channel were
    // unreadable until now, over all addresses.
    void take(const packet& taken, std::size_t cells, std::uint64_t unreadable);

    // No packet follows: what is unfinished is dropped.
    void finish();

    // Addresses that had packets, ascending.
    std::vector<address_counts> addresses() const;

 private:
    struct collected {
        address_counts counts;
        std::vector<std::uint8_t> group;
        std::uint64_t unreadable = 0;  // as it was at the last packet
        std::uint8_t continuity = 0;
        unsigned commands = 0;  // since the last data packet
        bool any = false;       // a packet was received
        bool open = false;      // a group was begun
    };

    static bool follows(const collected& at, const packet& taken, std::uint64_t unreadable);
    void append(collected& at, const packet& taken);
    void drop(collected& at, packet_drop cause);
    void close(collected& at);

    data_group_sink& sink_;
    packet_counts& counts_;
    const std::size_t memory_;
    std::size_t held_ = 0;
    std::size_t used_ = 0;  // addresses
    std::array<std::unique_ptr<collected>, 1024> by_address_;
};

}  // namespace dabspi::air

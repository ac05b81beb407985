// Packet mode of one sub-channel (EN 300 401, 5.3.2, 5.3.5): from its bytes to the data groups of all of its
// addresses, with or without forward error correction.
//
// Owned by the caller, used on one thread. The sub-channel is one stream of 24-byte cells. Any bytes are
// legal: a cell at which no packet with a right CRC begins is dropped, and reading goes on at the next cell.
//
// Without FEC every packet is read as soon as its bytes are there. With FEC it is the same until a packet is
// damaged or missing: from there on packets wait for the end of their FEC frame (103 cells), are corrected
// and read again, so that every packet is read once and in order. Where FEC is signalled but not sent, damage
// holds packets back for the length of one FEC frame.
//
// Memory: about 25 KiB, and the data groups being collected (packet_limits::groups).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "tools/air/packets/fec_table.h"
#include "tools/air/packets/group_collector.h"
#include "tools/air/packets/packet.h"
#include "tools/air/packets/packet_counts.h"

namespace dabspi::air {

enum class packet_fec : std::uint8_t {
    none,    // FEC packets are passed over
    rs_12_9  // FIG 0/14 says scheme 1
};

struct packet_limits {
    std::size_t groups = std::size_t{1} << 20;  // bytes of the data groups being collected, all addresses
};

class packet_decoder {
 public:
    // `sink` must outlive the decoder.
    explicit packet_decoder(data_group_sink& sink, packet_fec fec = packet_fec::none,
                            const packet_limits& limits = {});

    // The sub-channel's next bytes: usually those of one logical frame.
    void feed(byte_view bytes);

    // `size` bytes of the sub-channel are missing here: those of logical frames that were not received.
    void missing(std::size_t size);

    // What is said of the sub-channel from here on: FIG 0/14 may come after the first packets.
    void set_fec(packet_fec fec);

    // Nothing follows: reads what was held back. The decoder may be fed again afterwards, from anywhere.
    void finish();

    const packet_counts& counts() const { return counts_; }
    std::vector<address_counts> addresses() const { return groups_.addresses(); }

 private:
    // A possible set of FEC packets: how many were seen of the set that ends with cell `end`.
    struct fec_candidate {
        std::uint64_t end = 0;
        std::size_t seen = 0;
    };
    // What becomes of a packet that cannot be read, or is not there as a whole.
    enum class unreadable : std::uint8_t { wait, drop };

    void append(byte_view bytes, bool are_missing);
    void append_missing(std::size_t size);
    void complete_cell();
    void skip(std::size_t size);
    std::size_t fec_packets_seen(std::uint64_t cell);
    void end_fec_frame(std::uint64_t last_cell, std::size_t seen);
    void repair(std::uint64_t last_cell);
    bool any_missing(std::uint64_t first, std::uint64_t last) const;
    bool is_fec_place(std::uint64_t cell) const;
    void read(std::uint64_t end, unreadable what);
    bool read_at_next(std::uint64_t end, unreadable what);
    std::size_t readable_cells(const std::uint8_t* at, const std::uint8_t* missing, std::size_t cells) const;
    void drop_cell();
    void discard_old_cells();

    byte_view cells(std::uint64_t first, std::size_t count) const;

    packet_counts counts_;
    group_collector groups_;
    packet_fec fec_;
    std::unique_ptr<fec_table> table_;  // made when it is needed first

    // The stream's cells base_ .. end_ - 1, as bytes and as "is missing"; behind them a part of a cell.
    std::vector<std::uint8_t> bytes_;
    std::vector<std::uint8_t> missing_;
    bool part_missing_ = false;  // some of that part
    std::uint64_t base_ = 0;
    std::uint64_t end_ = 0;
    std::uint64_t next_ = 0;  // the next packet begins here
    bool held_ = false;       // what stands at `next_` is damaged and waits for its FEC packets
    std::uint64_t unreadable_ = 0;

    std::array<fec_candidate, 16> candidates_{};  // by their end, modulo 16
    std::uint64_t expected_ = 0;                  // the last cell of this FEC frame; 0: not known
    unsigned absent_ = 0;                         // sets in a row that were not where they were expected
};

}  // namespace dabspi::air

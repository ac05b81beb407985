// Packet mode of one sub-channel as it is sent (EN 300 401, 5.3.2, 5.3.5): data groups in packets of one
// address, whole packets in every logical frame, padding where nothing is to be sent, with or without
// forward error correction.
//
// Owned by the caller, used on one thread. The continuity goes on from packet to packet. Memory: one data
// group, and with FEC one FEC frame.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "tools/spi/byte_view.h"

namespace dabspi::transmit {

using spi_object::byte_view;
using spi_object::bytes;

struct packet_settings {
    std::uint16_t address = 1;     // 1..1023, but 1022, which FEC packets have
    std::size_t frame_size = 48;   // bytes of the sub-channel in 24 ms, a multiple of 24
    std::size_t packet_size = 48;  // the longest: 24, 48, 72 or 96, no more than a frame holds
    bool fec = false;
};

// Where the data groups come from.
class group_source {
 public:
    virtual ~group_source() = default;
    // The next one, valid until the call after. Empty: none now.
    virtual byte_view next_group() = 0;
    // Is the one given last the last of a stretch that is repeated as a whole? It is then cut so that the
    // continuity of its last packet is 3.
    virtual bool ends_stretch() const { return false; }
};

class packet_writer {
 public:
    // `source` must outlive the writer.
    packet_writer(const packet_settings& settings, group_source& source);
    ~packet_writer();

    // The next logical frame: puts frame_size bytes there.
    void write_frame(std::uint8_t* to);

    // Nothing but whole data groups and, with FEC, whole FEC frames were sent until now, and the next packet
    // has continuity 0: what follows may be what came at first.
    bool at_seam() const;
    // Cells of 24 bytes, all that were sent.
    std::uint64_t cells() const { return cells_; }
    // No data group is being sent.
    bool between_groups() const { return sent_ == group_.size(); }

 private:
    class fec_encoder;

    std::size_t write_packet(std::uint8_t* to, std::size_t most_cells);
    std::size_t packets_of_stretch_end() const;
    void begin_group();

    const packet_settings settings_;
    group_source& source_;
    byte_view group_;
    std::size_t sent_ = 0;          // bytes of it
    std::size_t packets_left_ = 0;  // of the group that ends a stretch; 0: any other
    std::uint8_t continuity_ = 0;
    std::uint64_t cells_ = 0;
    std::unique_ptr<fec_encoder> fec_;
};

}  // namespace dabspi::transmit

// One sub-channel with SPI: its packets, and the carousels at its addresses. Owned by a multiplex_reception,
// used on its thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>

#include "tools/air/packets/packet_decoder.h"
#include "tools/air/reception/spi_carousel.h"
#include "tools/air/reception/sub_channel_backlog.h"

namespace dabspi::air {

class spi_sub_channel final : private data_group_sink {
 public:
    explicit spi_sub_channel(packet_fec fec) : fec_(fec), packets_(*this, fec) {}

    // The bytes of logical frame `frame`. Frames between it and the one before are missing.
    void feed(std::uint64_t frame, byte_view sent);
    void finish() { packets_.finish(); }

    void set_fec(packet_fec fec);
    void attach(std::uint16_t address, spi_carousel& to) { carousels_[address] = &to; }
    void detach(std::uint16_t address) { carousels_.erase(address); }
    bool is_unused() const { return carousels_.empty(); }

    const packet_counts& counts() const { return packets_.counts(); }
    std::vector<address_counts> addresses() const { return packets_.addresses(); }

 private:
    void data_group(std::uint16_t address, byte_view group) override;

    packet_fec fec_;
    packet_decoder packets_;
    std::map<std::uint16_t, spi_carousel*> carousels_;
    std::uint64_t frame_ = 0;
    bool begun_ = false;
};

}  // namespace dabspi::air

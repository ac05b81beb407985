// What the FIC announces of an ensemble with an SPI service. Plain values.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace dabspi::transmit {

struct announced_service {
    std::uint16_t sid = 0;
    std::string label;  // UTF-8
};

// With equal error protection 3-A.
struct announced_sub_channel {
    std::uint8_t id = 0;
    std::uint16_t start = 0;     // capacity units
    std::uint16_t bit_rate = 0;  // kbit/s, a multiple of 8

    std::uint16_t units() const { return static_cast<std::uint16_t>(bit_rate / 8 * 6); }
    std::size_t bytes_of_frame() const { return std::size_t{bit_rate} * 3; }
};

struct announced_ensemble {
    std::uint8_t ecc = 0;
    std::uint16_t eid = 0;
    std::string label;
    int offset_half_hours = 0;
    // Audio: the primary component of each is in `sound`, which they share.
    std::vector<announced_service> services;
    announced_sub_channel sound;
    std::uint32_t spi_sid = 0;  // 32 bits
    std::string spi_label;
    announced_sub_channel spi;
    std::uint16_t spi_address = 1;
    bool spi_fec = false;
};

}  // namespace dabspi::transmit

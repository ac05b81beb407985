// One MSC data group (EN 300 401, 5.3.3). Pure functions, any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "tools/spi/byte_view.h"

namespace dabspi::air {

using spi_object::byte_view;

constexpr std::size_t kLongestDataField = 8191;

// The views are of the bytes that were read.
struct data_group {
    std::uint8_t type = 0;        // 0..15; 3 MOT header, 4 body, 5 scrambled body, 6 and 7 directory
    std::uint8_t continuity = 0;  // 0..15
    std::uint8_t repetition = 0;  // how often it is still sent; 15: not known
    std::optional<std::uint16_t> extension;
    bool has_crc = false;
    bool has_segment = false;  // `last` and `segment` are there
    bool last = false;
    std::uint16_t segment = 0;  // 0..32,767
    std::optional<std::uint16_t> transport_id;
    byte_view end_address;
    byte_view data;
};

enum class group_fault : std::uint8_t {
    none,
    too_short,  // its header says more than there is
    wrong_crc,
    ill_formed,  // a transport identifier longer than its field
    too_long     // a data field of more than 8,191 bytes
};

// Fills `read`, which says nothing unless there is no fault. A group without CRC is legal.
group_fault read_data_group(byte_view bytes, data_group& read);

}  // namespace dabspi::air

// A MOT directory (EN 301 234, 7.2.3, 7.2.8). Pure functions, any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tools/air/mot/object_header.h"
#include "tools/spi/byte_view.h"

namespace dabspi::air {

struct mot_directory {
    struct entry {
        std::uint16_t transport_id = 0;
        object_header header;
        byte_view bytes;  // the header as sent, a part of what was read
    };
    std::uint16_t objects = 0;        // as it says
    std::uint32_t period_tenths = 0;  // carousel period, 0.1 s; 0: not said
    std::uint16_t segment_size = 0;   // 0: any
    byte_view parameters;             // a part of what was read
    std::vector<entry> entries;
    bool cut = false;  // it lists more objects than `most_objects`
};

// An uncompressed directory. False when it is ill-formed or shorter than it says; `read` then says nothing.
bool read_directory(byte_view plain, std::size_t most_objects, mot_directory& read);

// What stands in front of a compressed directory.
struct compressed_directory {
    std::uint8_t compression = 0;  // 1 = gzip
    std::uint32_t plain_size = 0;
    byte_view coded;
};

// False when it is ill-formed or shorter than it says.
bool read_compressed_directory(byte_view entity, compressed_directory& read);

}  // namespace dabspi::air

// A MOT object that was received whole, as it is handed on.
#pragma once

#include <cstdint>
#include <memory>

#include "tools/air/mot/object_header.h"

namespace dabspi::air {

struct mot_object {
    std::uint16_t transport_id = 0;
    const object_header& header;  // name, types, parameters; valid during the call
    // Unpacked. Never null, and the receiver's to keep.
    std::shared_ptr<const spi_object::bytes> body;
    bool was_compressed = false;
    std::uint64_t frame =
        0;                // the logical frame with its last segment, or with the header that came after it
    bool is_new = false;  // another version than the one before; false: a repeat
};

class object_sink {
 public:
    virtual ~object_sink() = default;
    virtual void object(const mot_object& received) = 0;
};

}  // namespace dabspi::air

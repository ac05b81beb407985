// AF packets that carry a frame (TS 102 693 over TS 102 821): checks them, and takes the frame from their TAG
// items.
#pragma once

#include <cstdint>
#include <optional>

#include "tools/air/container/container_statistics.h"
#include "tools/air/container/edi_packet.h"
#include "tools/air/container/frame_counter.h"
#include "tools/air/frame.h"

namespace dabspi::air {

class edi_frames {
 public:
    explicit edi_frames(container_statistics& statistics) : statistics_(statistics) {}

    // `packet` is an AF packet as a whole; the frame's views are of it. False: no frame, and why is counted.
    bool take(byte_view packet, frame& to);
    // The same for one that edi_at() has found, and whose CRC is known to be right.
    bool take_intact(byte_view packet, frame& to);

    // Is its CRC right, or stated not to be used?
    static bool is_intact(byte_view packet);

 private:
    bool read_items(byte_view payload, frame& to);
    bool read_deti(byte_view value, frame& to);
    void read_sub_channel(byte_view value, frame& to);
    bool is_repeated(byte_view packet);

    container_statistics& statistics_;
    frame_counter counter_{5000};
    bool has_deti_ = false;
    std::optional<std::uint16_t> count_;
    std::uint64_t last_ = 0;  // what the packet before is known by
};

}  // namespace dabspi::air

// One stretch of a sub-channel, as packets, that may be repeated as often as one likes: continuity of packets
// and data groups, FEC frames and logical frames fit together at its seam. Memory: the stretch.
#pragma once

#include <cstdint>
#include <vector>

#include "tools/transmit/packets/packet_writer.h"
#include "tools/transmit/schedule/order.h"

namespace dabspi::transmit {

// Logical frames in which a group is sent, first and last.
struct group_frames {
    std::uint32_t first = 0;
    std::uint32_t last = 0;
};

struct stretch {
    bytes packets;                     // whole logical frames
    std::vector<group_frames> groups;  // one for each of its order
    std::uint32_t frames = 0;
};

// `order` is closed.
stretch make_stretch(const sent_carousel& carousel, const sending_order& order,
                     const packet_settings& settings);

}  // namespace dabspi::transmit

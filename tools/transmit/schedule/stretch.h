// One stretch of a sub-channel, as packets, that may be repeated as often as one likes: continuity of packets
// and data groups, FEC frames and logical frames fit together at its seam. Memory: the stretch.
#pragma once

#include <cstdint>
#include <vector>

#include "tools/transmit/packets/packet_writer.h"
#include "tools/transmit/schedule/order.h"

namespace dabspi::transmit {

// Where a group is sent, in cells of 24 bytes: its first, and the one behind its last.
struct group_cells {
    std::uint64_t first = 0;
    std::uint64_t end = 0;
};

struct stretch {
    bytes packets;                    // whole logical frames
    std::vector<group_cells> groups;  // one for each of its order
    std::uint32_t frames = 0;
    std::uint64_t cells = 0;
};

// `order` is closed.
stretch make_stretch(const sent_carousel& carousel, const sending_order& order,
                     const packet_settings& settings);

}  // namespace dabspi::transmit

#include "tools/air/packets/packet_counts.h"

namespace dabspi::air {

drop_words words_of(packet_drop cause) {
    switch (cause) {
        case packet_drop::wrong_crc: return {"wrong_crc", "cells without a packet whose CRC is right"};
        case packet_drop::missing_cell: return {"missing_cell", "cells of missing frames"};
        case packet_drop::ill_formed:
            return {"ill_formed", "packets whose useful length reaches beyond their field"};
        case packet_drop::lost_packets: return {"lost_packets", "data groups with lost packets"};
        case packet_drop::repeated_packet: return {"repeated_packet", "data groups with a repeated packet"};
        case packet_drop::without_begin:
            return {"without_begin", "packets of data groups whose beginning was not received"};
        case packet_drop::unfinished_group: return {"unfinished_group", "data groups without their end"};
        case packet_drop::group_too_long: return {"group_too_long", "data groups that are too long"};
        case packet_drop::memory_limit: return {"memory_limit", "data groups beyond the memory limit"};
        case packet_drop::count: break;
    }
    return {"", ""};
}

}  // namespace dabspi::air

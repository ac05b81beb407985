#include "tools/air/packets/packet_counts.h"

namespace dabspi::air {

const char* drop_text(packet_drop cause) {
    switch (cause) {
        case packet_drop::wrong_crc: return "cells without a packet whose CRC is right";
        case packet_drop::missing_cell: return "cells of missing frames";
        case packet_drop::ill_formed: return "packets whose useful length reaches beyond their field";
        case packet_drop::lost_packets: return "data groups with lost packets";
        case packet_drop::repeated_packet: return "data groups with a repeated packet";
        case packet_drop::without_begin: return "packets of data groups whose beginning was not received";
        case packet_drop::unfinished_group: return "data groups without their end";
        case packet_drop::group_too_long: return "data groups that are too long";
        case packet_drop::memory_limit: return "data groups beyond the memory limit";
        case packet_drop::count: break;
    }
    return "";
}

}  // namespace dabspi::air

// One configuration of a multiplex, as the FIGs of type 0 describe it (EN 300 401, 6 and 8.1): tables by
// the identifiers that the FIGs use, filled in whatever order these come.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

namespace dabspi::air {

// 0/1, with 0/14
struct sub_channel {
    std::uint16_t start = 0;     // capacity units
    std::uint16_t size = 0;      // capacity units
    std::uint16_t bit_rate = 0;  // kbit/s; 0: not known
    bool equal = false;          // equal error protection, by option and level; else unequal, by level
    std::uint8_t option = 0;
    std::uint8_t level = 0;  // 1..5; 1 is the strongest

    bool operator==(const sub_channel& other) const {
        return start == other.start && size == other.size && bit_rate == other.bit_rate &&
               equal == other.equal && option == other.option && level == other.level;
    }
};

enum class transport : std::uint8_t { audio = 0, stream_data = 1, reserved = 2, packet = 3 };

// One component of a service, of 0/2.
struct service_component {
    transport mode = transport::audio;
    std::uint8_t type = 0;    // ASCTy or DSCTy; of packet mode it stands in 0/3
    std::uint16_t where = 0;  // SubChId; SCId in packet mode
    bool primary = false;
    bool access_control = false;

    bool operator==(const service_component& other) const {
        return mode == other.mode && type == other.type && where == other.where && primary == other.primary &&
               access_control == other.access_control;
    }
};

// 0/2
struct service_organisation {
    bool long_id = false;        // 32 bits
    std::uint8_t ca_system = 0;  // CAId
    std::vector<service_component> components;

    bool operator==(const service_organisation& other) const {
        return long_id == other.long_id && ca_system == other.ca_system && components == other.components;
    }
};

// 0/3
struct packet_component {
    bool data_groups = false;
    std::uint8_t type = 0;  // DSCTy
    std::uint8_t sub_channel = 0;
    std::uint16_t address = 0;

    bool operator==(const packet_component& other) const {
        return data_groups == other.data_groups && type == other.type && sub_channel == other.sub_channel &&
               address == other.address;
    }
};

// 0/8: which component of the service a SCIdS means.
struct component_location {
    bool packet = false;
    std::uint16_t where = 0;  // SubChId; SCId in packet mode

    bool operator==(const component_location& other) const {
        return packet == other.packet && where == other.where;
    }
};

// 0/13
struct user_application {
    std::uint16_t type = 0;
    std::vector<std::uint8_t> data;

    bool operator==(const user_application& other) const { return type == other.type && data == other.data; }
};

using component_id = std::pair<std::uint32_t, std::uint8_t>;  // SId, SCIdS

struct configuration {
    std::map<std::uint8_t, sub_channel> sub_channels;
    std::map<std::uint8_t, std::uint8_t> fec_schemes;  // by sub-channel
    std::map<std::uint32_t, service_organisation> services;
    std::map<std::uint16_t, packet_component> packet_components;  // by SCId
    std::map<component_id, component_location> definitions;
    std::map<component_id, std::vector<user_application>> user_applications;
};

// A multiplex has 64 sub-channels. What is beyond these was made to take memory.
constexpr std::size_t kMostServices = 512;
constexpr std::size_t kMostComponents = 2048;

}  // namespace dabspi::air

// An ensemble as the FIC describes it, joined for those who ask: services with their components,
// sub-channels, where the SPI is. Plain values.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/air/fic/configuration.h"

namespace dabspi::air {

struct described_component {
    service_component organisation;
    std::optional<std::uint8_t> scids;  // none: a secondary component without 0/8
    std::string label;
    std::optional<packet_component> packet;  // of packet mode, once 0/3 has come
    std::optional<std::uint8_t> sub_channel;
    std::vector<user_application> user_applications;
};

struct described_service {
    std::uint32_t sid = 0;
    bool long_id = false;  // 32 bits: a data service; its ECC stands in it
    std::uint8_t ca_system = 0;
    std::string label;
    std::vector<described_component> components;  // empty: only its label has come
};

struct described_sub_channel {
    std::uint8_t id = 0;
    sub_channel organisation;
    std::optional<std::uint8_t> fec_scheme;
};

struct ensemble {
    std::optional<std::uint16_t> eid;
    std::optional<std::uint8_t> ecc;
    std::string label;
    std::optional<int> offset_half_hours;
    std::vector<described_service> services;          // by SId
    std::vector<described_sub_channel> sub_channels;  // by SubChId
};

// One component with an SPI carousel in packet mode.
struct spi_component {
    std::uint32_t sid = 0;
    bool long_id = false;
    std::uint8_t scids = 0;
    std::string label;  // of the service
    std::uint8_t sub_channel = 0;
    std::uint16_t address = 0;
    std::uint8_t fec_scheme = 0;  // 1: that of EN 300 401, 5.3.5; 0 as well where nothing is said of it
    std::uint16_t bit_rate = 0;   // kbit/s of the whole sub-channel; 0: not known
    std::vector<std::uint8_t> application_data;

    bool operator==(const spi_component& other) const {
        return sid == other.sid && long_id == other.long_id && scids == other.scids && label == other.label &&
               sub_channel == other.sub_channel && address == other.address &&
               fec_scheme == other.fec_scheme && bit_rate == other.bit_rate &&
               application_data == other.application_data;
    }
};

// User application 7 (TS 101 756) on a component in packet mode that carries MOT in data groups, without
// access control. By SId and SCIdS.
std::vector<spi_component> spi_components(const ensemble& of);

// SPI that is announced, and cannot be read here, in words: under access control, in X-PAD, without MOT.
std::vector<std::string> unreadable_spi(const ensemble& of);

// "E1C00098" or "C36B"
std::string service_id_text(std::uint32_t sid, bool long_id);

}  // namespace dabspi::air

// Packet captures of UDP datagrams, written by hand: pcap in both byte orders, pcapng; several link types.
#pragma once

#include <string>
#include <vector>

#include "testkit/multiplex/checksum.h"

namespace multiplex_builder {

struct datagram {
    bytes payload;
    std::uint16_t port = 12000;
    bool six = false;               // IPv6
    std::size_t fragment_size = 0;  // not 0: as IP fragments of at most so many bytes, a multiple of 8
    std::uint16_t identification = 1;
};

enum class link { ethernet, ethernet_vlan, linux_any, linux_any_2, loopback, raw };

struct capture_options {
    link on = link::ethernet;
    bool big_endian = false;
    bool nanoseconds = false;
};

bytes pcap_file(const std::vector<datagram>& datagrams, const capture_options& options = {});
bytes pcapng_file(const std::vector<datagram>& datagrams, const capture_options& options = {});

// Each a datagram of its own.
std::vector<datagram> datagrams_of(const std::vector<bytes>& payloads, std::uint16_t port = 12000);

}  // namespace multiplex_builder

// UDP datagrams in captured packets: Ethernet (also with VLAN tags), Linux "any" captures, loopback and raw
// IP; IPv4 and IPv6, with fragments put together.
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <string>
#include <vector>

#include "tools/air/container/container_statistics.h"
#include "tools/spi/byte_view.h"

namespace dabspi::air {

using spi_object::byte_view;

// Where a datagram goes, and from where it comes: what belongs together.
struct udp_flow {
    std::vector<std::uint8_t> source;       // 4 or 16 bytes
    std::vector<std::uint8_t> destination;  // likewise
    std::uint16_t source_port = 0;
    std::uint16_t port = 0;

    bool operator==(const udp_flow& other) const {
        return port == other.port && source_port == other.source_port && source == other.source &&
               destination == other.destination;
    }
};

// "239.1.2.3:12000", "[ff02::1]:12000": where it goes.
std::string destination_text(const udp_flow& flow);

struct udp_datagram {
    udp_flow flow;
    byte_view payload;
};

class datagram_reader {
 public:
    // Kept for fragments of datagrams, at most.
    static constexpr std::size_t kMostOpen = 16;

    explicit datagram_reader(container_statistics& statistics) : statistics_(statistics) {}

    // Can packets of this link type (pcap's DLT_ number) be read?
    static bool knows(int link_type);

    // The datagram in a packet; false: none, and why is counted. Valid until the next call.
    bool read(int link_type, byte_view packet, udp_datagram& to);

 private:
    struct part {
        std::size_t begin;
        std::vector<std::uint8_t> bytes;
    };
    struct open_datagram {
        std::vector<std::uint8_t> key;  // addresses, identification
        std::vector<part> parts;
        std::size_t size = 0;  // 0: the last part has not come
        std::size_t held = 0;
    };

    bool read_ip4(byte_view packet, udp_datagram& to);
    bool read_ip6(byte_view packet, udp_datagram& to);
    bool read_udp(byte_view packet, udp_datagram& to);
    bool collect(std::vector<std::uint8_t> key, std::size_t begin, bool last, byte_view bytes);
    bool other();

    container_statistics& statistics_;
    std::list<open_datagram> open_;  // oldest first
    std::vector<std::uint8_t> whole_;
};

}  // namespace dabspi::air

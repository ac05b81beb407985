#include "tools/air/container/datagram.h"

#include <arpa/inet.h>
#include <pcap/dlt.h>

#include <algorithm>
#include <array>

namespace dabspi::air {

namespace {

constexpr std::uint32_t kIp4 = 0x0800;
constexpr std::uint32_t kIp6 = 0x86DD;
constexpr std::uint8_t kUdp = 17;
constexpr std::size_t kMostDatagram = 64 * 1024;
constexpr std::size_t kMostParts = 64;

constexpr bool is_vlan(std::uint32_t type) {
    return type == 0x8100 || type == 0x88A8 || type == 0x9100;
}

// What a packet holds, behind its link header.
struct network_packet {
    std::uint32_t type = 0;  // EtherType; 0: something else
    byte_view bytes;
};

network_packet of_ethernet(byte_view packet, std::size_t type_at) {
    while (is_vlan(packet.number(type_at, 2)))
        type_at += 4;
    return {packet.number(type_at, 2), packet.part(type_at + 2)};
}

network_packet of_raw(byte_view packet) {
    const unsigned version = packet[0] >> 4;
    return {version == 4 ? kIp4 : version == 6 ? kIp6 : 0, packet};
}

// Four bytes of address family, in the byte order of the machine that captured; the version tells as well.
constexpr std::size_t kLoopbackHeader = 4;

network_packet behind_link(int link_type, byte_view packet) {
    switch (link_type) {
        case DLT_EN10MB: return of_ethernet(packet, 12);
        case DLT_LINUX_SLL: return of_ethernet(packet, 14);
        case DLT_LINUX_SLL2: return {packet.number(0, 2), packet.part(20)};
        case DLT_NULL:
        case DLT_LOOP: return of_raw(packet.part(kLoopbackHeader));
        case DLT_RAW:
        case DLT_IPV4:
        case DLT_IPV6: return of_raw(packet);
        default: return {};
    }
}

std::vector<std::uint8_t> copied(byte_view bytes) {
    return {bytes.begin(), bytes.end()};
}

}  // namespace

std::string destination_text(const udp_flow& flow) {
    std::array<char, INET6_ADDRSTRLEN> text{};
    const bool six = flow.destination.size() == 16;
    if (flow.destination.size() != 4 && !six) return {};
    ::inet_ntop(six ? AF_INET6 : AF_INET, flow.destination.data(), text.data(), text.size());
    const std::string address = text.data();
    return (six ? "[" + address + "]" : address) + ":" + std::to_string(flow.port);
}

bool datagram_reader::knows(int link_type) {
    constexpr std::array<int, 8> kKnown = {DLT_EN10MB, DLT_LINUX_SLL, DLT_LINUX_SLL2, DLT_NULL,
                                           DLT_LOOP,   DLT_RAW,       DLT_IPV4,       DLT_IPV6};
    return std::find(kKnown.begin(), kKnown.end(), link_type) != kKnown.end();
}

bool datagram_reader::read(int link_type, byte_view packet, udp_datagram& to) {
    const network_packet inside = behind_link(link_type, packet);
    if (inside.type == kIp4) return read_ip4(inside.bytes, to);
    if (inside.type == kIp6) return read_ip6(inside.bytes, to);
    return other();
}

bool datagram_reader::other() {
    ++statistics_.captured_other;
    return false;
}

bool datagram_reader::read_ip4(byte_view packet, udp_datagram& to) {
    constexpr std::size_t kLeast = 20;
    const std::size_t header = 4U * (packet[0] & 0xF);
    const std::size_t total = packet.number(2, 2);
    if (packet.size() < kLeast || header < kLeast || packet[9] != kUdp) return other();
    if (total < header || total > packet.size()) {
        ++statistics_.captured_cut;
        return false;
    }
    const byte_view bytes = packet.part(header, total - header);
    to.flow.source = copied(packet.part(12, 4));
    to.flow.destination = copied(packet.part(16, 4));
    const std::uint32_t field = packet.number(6, 2);
    const bool more = (field & 0x2000) != 0;
    const std::size_t begin = 8 * (field & 0x1FFF);
    if (!more && begin == 0) return read_udp(bytes, to);
    std::vector<std::uint8_t> key = copied(packet.part(12, 8));
    key.push_back(packet[4]);
    key.push_back(packet[5]);
    return collect(std::move(key), begin, !more, bytes) && read_udp(whole_, to);
}

bool datagram_reader::read_ip6(byte_view packet, udp_datagram& to) {
    constexpr std::size_t kHeader = 40;
    constexpr std::size_t kFragmentHeader = 8;
    constexpr std::uint8_t kFragment = 44;
    const std::size_t size = packet.number(4, 2);
    if (packet.size() < kHeader) return other();
    if (kHeader + size > packet.size()) {
        ++statistics_.captured_cut;
        return false;
    }
    byte_view bytes = packet.part(kHeader, size);
    to.flow.source = copied(packet.part(8, 16));
    to.flow.destination = copied(packet.part(24, 16));
    std::uint8_t next = packet[6];
    // Hop-by-hop, routing and destination options: a length in units of 8 bytes behind the first.
    while ((next == 0 || next == 43 || next == 60) && !bytes.empty()) {
        next = bytes[0];
        bytes = bytes.part(8U * (bytes[1] + 1U));
    }
    if (next == kUdp) return read_udp(bytes, to);
    if (next != kFragment || bytes[0] != kUdp) return other();
    const std::uint32_t field = bytes.number(2, 2);
    std::vector<std::uint8_t> key = copied(packet.part(8, 32));
    for (std::size_t i = 4; i < kFragmentHeader; ++i)
        key.push_back(bytes[i]);
    return collect(std::move(key), field & 0xFFF8, (field & 1) == 0, bytes.part(kFragmentHeader)) &&
           read_udp(whole_, to);
}

bool datagram_reader::read_udp(byte_view packet, udp_datagram& to) {
    constexpr std::size_t kHeader = 8;
    const std::size_t size = packet.number(4, 2);
    if (packet.size() < kHeader || size < kHeader || size > packet.size()) {
        ++statistics_.captured_cut;
        return false;
    }
    to.flow.source_port = static_cast<std::uint16_t>(packet.number(0, 2));
    to.flow.port = static_cast<std::uint16_t>(packet.number(2, 2));
    to.payload = packet.part(kHeader, size - kHeader);
    return true;
}

// True: the datagram is complete, in whole_.
bool datagram_reader::collect(std::vector<std::uint8_t> key, std::size_t begin, bool last, byte_view bytes) {
    auto entry =
        std::find_if(open_.begin(), open_.end(), [&](const open_datagram& each) { return each.key == key; });
    if (entry == open_.end()) {
        if (open_.size() == kMostOpen) {
            statistics_.captured_fragments += open_.front().parts.size();
            open_.pop_front();
        }
        entry = open_.insert(open_.end(), {std::move(key), {}, 0, 0});
    }
    const bool repeated = std::any_of(entry->parts.begin(), entry->parts.end(),
                                      [&](const part& each) { return each.begin == begin; });
    if (repeated || bytes.empty() || entry->parts.size() == kMostParts ||
        begin + bytes.size() > kMostDatagram) {
        ++statistics_.captured_fragments;
        return false;
    }
    if (last) entry->size = begin + bytes.size();
    entry->held += bytes.size();
    entry->parts.push_back({begin, copied(bytes)});
    if (entry->size == 0 || entry->held != entry->size) return false;
    whole_.assign(entry->size, 0);
    for (const part& each : entry->parts) {
        const std::size_t count =
            std::min(each.bytes.size(), entry->size - std::min(each.begin, entry->size));
        std::copy_n(each.bytes.begin(), count, whole_.begin() + static_cast<std::ptrdiff_t>(each.begin));
    }
    open_.erase(entry);
    return true;
}

}  // namespace dabspi::air

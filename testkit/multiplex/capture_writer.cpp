#include "testkit/multiplex/capture_writer.h"

#include <algorithm>

#include "testkit/multiplex/appending.h"

namespace multiplex_builder {

namespace {

bytes udp(const datagram& of) {
    bytes result;
    put(result, 40000, 2);
    put(result, of.port, 2);
    put(result, 8 + of.payload.size(), 2);
    put(result, 0, 2);
    append(result, of.payload);
    return result;
}

bytes ip4(const datagram& of, const bytes& part, std::size_t begin, bool more) {
    bytes result;
    put(result, 0x4500, 2);
    put(result, 20 + part.size(), 2);
    put(result, of.identification, 2);
    put(result, (more ? 0x2000U : 0U) | begin / 8, 2);
    put(result, 0x1011, 2);  // time to live, UDP
    put(result, 0, 2);
    put(result, 0xC0A80001, 4);
    put(result, 0xEF010203, 4);
    append(result, part);
    return result;
}

bytes ip6(const datagram& of, const bytes& part, std::size_t begin, bool more) {
    bytes inside;
    const bool fragment = of.fragment_size != 0;
    if (fragment) {
        put(inside, 0x1100, 2);
        put(inside, begin | (more ? 1U : 0U), 2);
        put(inside, of.identification, 4);
    }
    append(inside, part);
    bytes result;
    put(result, 0x60000000, 4);
    put(result, inside.size(), 2);
    put(result, fragment ? 44 : 17, 1);
    put(result, 1, 1);
    put(result, 0xFE80000000000000, 8);
    put(result, 1, 8);
    put(result, 0xFF02000000000000, 8);
    put(result, 5, 8);
    append(result, inside);
    return result;
}

bytes in_link(const bytes& packet, bool six, link on) {
    const unsigned type = six ? 0x86DD : 0x0800;
    bytes result;
    switch (on) {
        case link::ethernet:
            result.assign(12, 0x02);
            put(result, type, 2);
            break;
        case link::ethernet_vlan:
            result.assign(12, 0x02);
            put(result, 0x81000064, 4);
            put(result, type, 2);
            break;
        case link::linux_any:
            result.assign(14, 0);
            put(result, type, 2);
            break;
        case link::linux_any_2:
            put(result, type, 2);
            result.resize(20);
            break;
        case link::loopback: put(result, six ? 0x0A000000 : 0x02000000, 4); break;
        case link::raw: break;
    }
    append(result, packet);
    return result;
}

unsigned link_number(link on) {
    switch (on) {
        case link::linux_any: return 113;
        case link::linux_any_2: return 276;
        case link::loopback: return 0;
        case link::raw: return 101;
        case link::ethernet:
        case link::ethernet_vlan: break;
    }
    return 1;
}

std::vector<bytes> packets(const std::vector<datagram>& datagrams, link on) {
    std::vector<bytes> result;
    for (const datagram& each : datagrams) {
        const bytes whole = udp(each);
        const std::size_t step = each.fragment_size == 0 ? whole.size() : each.fragment_size;
        for (std::size_t begin = 0; begin < whole.size(); begin += step) {
            const std::size_t end = std::min(begin + step, whole.size());
            const bytes part(whole.begin() + static_cast<std::ptrdiff_t>(begin),
                             whole.begin() + static_cast<std::ptrdiff_t>(end));
            const bool more = end != whole.size();
            result.push_back(in_link(each.six ? ip6(each, part, begin, more) : ip4(each, part, begin, more),
                                     each.six, on));
        }
    }
    return result;
}

void put_ordered(bytes& to, std::uint32_t value, unsigned count, bool big) {
    bytes number;
    put(number, value, count);
    if (!big) std::reverse(number.begin(), number.end());
    append(to, number);
}

void put_block(bytes& to, std::uint32_t type, bytes body, bool big) {
    while (body.size() % 4 != 0)
        body.push_back(0);
    const auto size = static_cast<std::uint32_t>(body.size() + 12);
    put_ordered(to, type, 4, big);
    put_ordered(to, size, 4, big);
    append(to, body);
    put_ordered(to, size, 4, big);
}

}  // namespace

bytes pcap_file(const std::vector<datagram>& datagrams, const capture_options& options) {
    const bool big = options.big_endian;
    bytes file;
    put_ordered(file, options.nanoseconds ? 0xA1B23C4D : 0xA1B2C3D4, 4, big);
    put_ordered(file, 2, 2, big);
    put_ordered(file, 4, 2, big);
    put_ordered(file, 0, 4, big);
    put_ordered(file, 0, 4, big);
    put_ordered(file, 65535, 4, big);
    put_ordered(file, link_number(options.on), 4, big);
    std::uint32_t second = 0;
    for (const bytes& each : packets(datagrams, options.on)) {
        put_ordered(file, ++second, 4, big);
        put_ordered(file, 0, 4, big);
        put_ordered(file, static_cast<std::uint32_t>(each.size()), 4, big);
        put_ordered(file, static_cast<std::uint32_t>(each.size()), 4, big);
        append(file, each);
    }
    return file;
}

bytes pcapng_file(const std::vector<datagram>& datagrams, const capture_options& options) {
    const bool big = options.big_endian;
    bytes file;
    bytes section;
    put_ordered(section, 0x1A2B3C4D, 4, big);
    put_ordered(section, 1, 2, big);
    put_ordered(section, 0, 2, big);
    section.resize(section.size() + 8, 0xFF);
    put_block(file, 0x0A0D0D0A, section, big);
    bytes interface;
    put_ordered(interface, link_number(options.on), 2, big);
    put_ordered(interface, 0, 2, big);
    put_ordered(interface, 65535, 4, big);
    put_block(file, 1, interface, big);
    for (const bytes& each : packets(datagrams, options.on)) {
        bytes block;
        put_ordered(block, 0, 4, big);
        put_ordered(block, 0, 4, big);
        put_ordered(block, 1, 4, big);
        put_ordered(block, static_cast<std::uint32_t>(each.size()), 4, big);
        put_ordered(block, static_cast<std::uint32_t>(each.size()), 4, big);
        append(block, each);
        put_block(file, 6, block, big);
    }
    return file;
}

std::vector<datagram> datagrams_of(const std::vector<bytes>& payloads, std::uint16_t port) {
    std::vector<datagram> result;
    for (const bytes& each : payloads) {
        datagram one;
        one.payload = each;
        one.port = port;
        one.identification = static_cast<std::uint16_t>(result.size() + 1);
        result.push_back(one);
    }
    return result;
}

}  // namespace multiplex_builder

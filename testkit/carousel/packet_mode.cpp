#include "testkit/carousel/packet_mode.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace carousel_kit {

namespace {

constexpr std::size_t kCellSize = 24;
constexpr std::size_t kDataCells = 94;
constexpr std::size_t kRows = 12;
constexpr std::size_t kDataColumns = 188;
constexpr std::size_t kParity = 16;

unsigned times(unsigned a, unsigned b) {  // in the field of 256 elements, 0x11D
    unsigned product = 0;
    for (; b != 0; b >>= 1) {
        if ((b & 1) != 0) product ^= a;
        a <<= 1;
        if ((a & 0x100) != 0) a ^= 0x11D;
    }
    return product;
}

// The product of (x + 2^i) for i = 0..15; the coefficient of x^16 first.
std::array<unsigned, kParity + 1> generator() {
    std::array<unsigned, kParity + 1> g{};
    g[0] = 1;
    unsigned root = 1;
    for (std::size_t degree = 0; degree < kParity; ++degree) {
        for (std::size_t i = degree + 1; i > 0; --i)
            g[i] ^= times(g[i - 1], root);
        root = times(root, 2);
    }
    return g;
}

}  // namespace

std::uint16_t crc(const bytes& of) {
    unsigned value = 0xFFFF;
    for (const unsigned byte : of)
        for (int bit = 7; bit >= 0; --bit) {
            const bool carry = ((value >> 15) ^ (byte >> bit & 1)) != 0;
            value = (value << 1 & 0xFFFF) ^ (carry ? 0x1021U : 0U);
        }
    return static_cast<std::uint16_t>(~value & 0xFFFF);
}

void append_u16(bytes& to, unsigned value) {
    to.push_back(static_cast<std::uint8_t>(value >> 8));
    to.push_back(static_cast<std::uint8_t>(value));
}

void append_crc(bytes& to) {
    append_u16(to, crc(to));
}

void append(bytes& to, const bytes& more) {
    to.insert(to.end(), more.begin(), more.end());
}

bytes rs_parity(const bytes& data) {
    static const std::array<unsigned, kParity + 1> g = generator();
    bytes rest = data;
    rest.resize(data.size() + kParity);
    for (std::size_t i = 0; i < data.size(); ++i) {
        const unsigned factor = rest[i];
        for (std::size_t j = 0; j <= kParity; ++j)
            rest[i + j] = static_cast<std::uint8_t>(rest[i + j] ^ times(g[j], factor));
    }
    return {rest.end() - kParity, rest.end()};
}

bytes data_group(const group_fields& fields, const bytes& data) {
    const bool access = fields.transport_id.has_value() || !fields.end_address.empty();
    bytes group;
    append_u16(group, (fields.extension ? 0x8000U : 0U) | (fields.crc ? 0x4000U : 0U) |
                          (fields.segment_field ? 0x2000U : 0U) | (access ? 0x1000U : 0U) | fields.type << 8 |
                          fields.continuity << 4 | fields.repetition);
    if (fields.extension) append_u16(group, *fields.extension);
    if (fields.segment_field) append_u16(group, (fields.last ? 0x8000U : 0U) | fields.number);
    if (access) {
        const std::size_t length = fields.end_address.size() + (fields.transport_id ? 2 : 0);
        group.push_back(static_cast<std::uint8_t>((fields.transport_id ? 0x10U : 0U) | length));
        if (fields.transport_id) append_u16(group, *fields.transport_id);
        append(group, fields.end_address);
    }
    append(group, data);
    if (fields.crc) append_crc(group);
    return group;
}

bytes packet(const packet_fields& fields, const bytes& data) {
    const std::size_t field = fields.cells * kCellSize - 5;
    if (data.size() > field) throw std::invalid_argument("more data than the packet's field takes");
    bytes whole;
    append_u16(whole, (fields.cells - 1) << 14 | (fields.continuity & 3) << 12 |
                          (fields.first ? 0x800U : 0U) | (fields.last ? 0x400U : 0U) | fields.address);
    whole.push_back(static_cast<std::uint8_t>((fields.command ? 0x80U : 0U) |
                                              fields.useful.value_or(static_cast<unsigned>(data.size()))));
    append(whole, data);
    whole.resize(3 + field);
    append_crc(whole);
    return whole;
}

bytes padding_packet(unsigned cells) {
    packet_fields fields;
    fields.cells = cells;
    fields.address = 0;
    fields.first = fields.last = false;
    return packet(fields, {});
}

bytes fec_packet(unsigned counter, const bytes& parity22) {
    bytes whole(kCellSize);
    whole[0] = static_cast<std::uint8_t>(counter << 2 | 1022 >> 8);
    whole[1] = 1022 & 0xFF;
    std::copy_n(parity22.begin(), std::min(parity22.size(), kCellSize - 2), whole.begin() + 2);
    return whole;
}

std::vector<bytes> packetizer::packets(unsigned address, const bytes& group) {
    std::vector<bytes> all;
    const std::size_t field = cells_ * kCellSize - 5;
    for (std::size_t at = 0; at < group.size() || at == 0; at += field) {
        const bytes part(group.begin() + static_cast<std::ptrdiff_t>(at),
                         group.begin() + static_cast<std::ptrdiff_t>(std::min(at + field, group.size())));
        packet_fields fields;
        fields.cells = static_cast<unsigned>((part.size() + 5 + kCellSize - 1) / kCellSize);
        fields.continuity = continuity_[address]++ & 3;
        fields.first = at == 0;
        fields.last = at + field >= group.size();
        fields.address = address;
        all.push_back(packet(fields, part));
    }
    return all;
}

bytes packetizer::joined(unsigned address, const bytes& group) {
    bytes all;
    for (const bytes& each : packets(address, group))
        append(all, each);
    return all;
}

namespace {

void append_fec_packets(bytes& stream) {
    const std::size_t frame = stream.size() - kDataCells * kCellSize;
    bytes parity(9 * 22);
    for (std::size_t row = 0; row < kRows; ++row) {
        bytes data;
        for (std::size_t column = 0; column < kDataColumns; ++column)
            data.push_back(stream[frame + column * kRows + row]);
        const bytes of_row = rs_parity(data);
        for (std::size_t column = 0; column < kParity; ++column)
            parity[column * kRows + row] = of_row[column];
    }
    for (unsigned counter = 0; counter < 9; ++counter) {
        const auto from = parity.begin() + counter * 22;
        append(stream, fec_packet(counter, bytes(from, from + 22)));
    }
}

}  // namespace

bytes with_fec(const std::vector<bytes>& packets) {
    bytes stream;
    std::size_t filled = 0;  // cells of this FEC frame
    const auto fill_up = [&] {
        for (; filled < kDataCells; ++filled)
            append(stream, padding_packet());
        append_fec_packets(stream);
        filled = 0;
    };
    for (const bytes& each : packets) {
        const std::size_t cells = each.size() / kCellSize;
        if (filled + cells > kDataCells) fill_up();
        append(stream, each);
        filled += cells;
    }
    if (filled != 0) fill_up();
    return stream;
}

std::vector<bytes> logical_frames(const bytes& stream, std::size_t size) {
    std::vector<bytes> frames;
    for (std::size_t at = 0; at < stream.size(); at += size)
        frames.emplace_back(stream.begin() + static_cast<std::ptrdiff_t>(at),
                            stream.begin() + static_cast<std::ptrdiff_t>(std::min(at + size, stream.size())));
    while (!frames.empty() && frames.back().size() < size)
        append(frames.back(), padding_packet());
    return frames;
}

}  // namespace carousel_kit

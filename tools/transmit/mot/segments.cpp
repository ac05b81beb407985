#include "tools/transmit/mot/segments.h"

#include <algorithm>
#include <stdexcept>

#include "tools/air/crc16.h"

namespace dabspi::transmit {

namespace {

constexpr unsigned kWithCrcSegmentAndAccess = 0x70;
constexpr unsigned kRepeatedWithoutEnd = 15;
constexpr unsigned kSegmentRepeatedWithoutEnd = 7;
constexpr unsigned kTransportIdOnly = 0x12;
constexpr std::size_t kCrc = 2;
constexpr std::size_t kPacketsOfGroup = 12;
constexpr std::size_t kOverheadOfPacket = 5;

}  // namespace

std::vector<bytes> segment_groups(group_type type, std::uint16_t transport_id, byte_view entity,
                                  std::size_t segment_size) {
    const std::size_t count = std::max<std::size_t>((entity.size() + segment_size - 1) / segment_size, 1);
    if (count > kMostSegments)
        throw std::length_error("an object of " + std::to_string(entity.size()) + " bytes has more than " +
                                std::to_string(kMostSegments) + " segments of " +
                                std::to_string(segment_size) + " bytes; use longer segments");
    std::vector<bytes> groups(count);
    for (std::size_t i = 0; i < count; ++i) {
        const byte_view segment = entity.part(i * segment_size, segment_size);
        bytes& group = groups[i];
        group.reserve(segment.size() + kGroupOverhead);
        append_number(group, kWithCrcSegmentAndAccess | static_cast<unsigned>(type), 1);
        append_number(group, kRepeatedWithoutEnd, 1);
        append_number(group, (i + 1 == count ? 0x8000U : 0U) | i, 2);
        append_number(group, kTransportIdOnly, 1);
        append_number(group, transport_id, 2);
        append_number(group, kSegmentRepeatedWithoutEnd << 13 | segment.size(), 2);
        append_bytes(group, segment);
        append_number(group, 0, kCrc);
    }
    return groups;
}

void finish_group(bytes& group, unsigned continuity) {
    group[1] = static_cast<std::uint8_t>((continuity & 0xF) << 4 | kRepeatedWithoutEnd);
    const std::size_t end = group.size() - kCrc;
    const std::uint16_t crc = air::crc16(byte_view(group).part(0, end));
    group[end] = static_cast<std::uint8_t>(crc >> 8);
    group[end + 1] = static_cast<std::uint8_t>(crc);
}

std::size_t usual_segment_size(std::size_t packet_size) {
    return kPacketsOfGroup * (packet_size - kOverheadOfPacket) - kGroupOverhead;
}

}  // namespace dabspi::transmit

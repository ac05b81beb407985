// A MOT entity cut into segments, each in an MSC data group (EN 301 234, 5.1; EN 300 401, 5.3.3). Pure
// functions, any thread.
#pragma once

#include <cstdint>
#include <vector>

#include "tools/transmit/mot/parameters.h"

namespace dabspi::transmit {

// What a data group carries.
enum class group_type : std::uint8_t { header = 3, body = 4, directory = 6, compressed_directory = 7 };
constexpr std::size_t kGroupTypes = 16;

constexpr std::size_t kLargestSegment = 8189;
constexpr std::size_t kMostSegments = 32768;
// Bytes of a data group beside its segment: group header, session header, segment header, CRC.
constexpr std::size_t kGroupOverhead = 2 + 2 + 3 + 2 + 2;

// The groups of an entity, complete but for continuity and CRC; an empty entity is one empty segment. Throws
// std::length_error when there would be too many segments.
std::vector<bytes> segment_groups(group_type type, std::uint16_t transport_id, byte_view entity,
                                  std::size_t segment_size);

// Fills in the continuity (0..15) and the CRC.
void finish_group(bytes& group, unsigned continuity);

// The size of segment whose groups fill a dozen packets of this size: longer ones lose more when a packet is
// lost, shorter ones take more headers.
std::size_t usual_segment_size(std::size_t packet_size);

}  // namespace dabspi::transmit

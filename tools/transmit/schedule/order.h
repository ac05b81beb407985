// In which order the segments of a carousel are sent, for one stretch that is then repeated. Pure functions,
// any thread; memory is that of the order, 8 bytes a segment.
//
// Computed: directory, service information and today's schedules are sent one behind the other, as a block:
// who has waited for the one gets the next at once. Blocks, logos, tomorrow's schedules and the rest are four
// classes. The time between two transmissions of a class is proportional to the square root of its size over
// its weight, which makes the weighted sum of the waits as small as it can be within the bit rate, in whole
// ratios, so that each class is spread evenly. A block that is due does not wait for the end of a large
// object.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "tools/transmit/mot/sent_carousel.h"

namespace dabspi::transmit {

// What an object is to a receiver that has just been switched on, the most urgent first.
enum class importance : std::uint8_t { service_information, today, logo, tomorrow, other };
constexpr std::size_t kImportances = 5;
const char* importance_text(importance of);  // "today's schedules"

struct planned_segment {
    std::uint32_t entity = 0;
    std::uint32_t segment = 0;
};
using sending_order = std::vector<planned_segment>;

// `importances` has one for each object.
sending_order computed_order(const sent_carousel& of, const std::vector<importance>& importances);
// Every segment once: the directory, then object after object.
sending_order plain_order(const sent_carousel& of);

// Sends some segments again at the end, so that of every type of data groups there are a multiple of sixteen:
// the continuity of the groups is right then when the stretch is repeated.
void close_order(sending_order& order, const sent_carousel& of);

}  // namespace dabspi::transmit

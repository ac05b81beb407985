#include "tools/check/call_place.h"

namespace dabspi::check {

std::string place_words(const std::vector<call_place>& places, std::size_t line) {
    if (line >= places.size()) return "line " + std::to_string(line);
    const call_place& place = places[line];
    return "frame " + std::to_string(place.frame) + (place.clock.empty() ? "" : ", " + place.clock);
}

}  // namespace dabspi::check

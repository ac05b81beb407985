// Programme guides of a few services and programmes, as plain values.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "tools/guide/programme_guide.h"

namespace small_guides {

constexpr std::int64_t kMidnight = 1773100800;  // 2026-03-10T00:00Z
constexpr long kDay = 20522;

inline dabspi::guide::texts medium(const std::string& name) {
    dabspi::guide::texts made;
    if (!name.empty()) made.medium_texts.push_back({name, ""});
    return made;
}

// `start` and `length` in minutes, the start from midnight on.
inline dabspi::guide::programme talk(const std::string& name, long start, unsigned length = 60) {
    dabspi::guide::programme made;
    made.names = medium(name);
    made.start = kMidnight + std::int64_t{start} * 60;
    made.duration = length * 60;
    return made;
}

inline dabspi::guide::programme with_id(dabspi::guide::programme of, const std::string& id) {
    of.id = id;
    return of;
}

// Programmes in any order. The service is announced as "Station c221".
inline dabspi::guide::service station(std::vector<dabspi::guide::programme> programmes,
                                      const dabspi::guide::service_id& id = {0xE1, 0xC221, 0}) {
    dabspi::guide::service made;
    made.id = id;
    made.announced = true;
    made.names = medium("Station " + id.text().substr(3, 4));
    std::sort(programmes.begin(), programmes.end(),
              [](const auto& a, const auto& b) { return a.start < b.start; });
    made.programmes = std::move(programmes);
    return made;
}

inline dabspi::guide::programme_guide guide_of(std::vector<dabspi::guide::service> services) {
    dabspi::guide::programme_guide made;
    std::sort(services.begin(), services.end(), [](const auto& a, const auto& b) { return a.id < b.id; });
    made.services = std::move(services);
    return made;
}

}  // namespace small_guides

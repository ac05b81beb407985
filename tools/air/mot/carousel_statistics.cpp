#include "tools/air/mot/carousel_statistics.h"

#include <algorithm>

namespace dabspi::air {

void receptions::add(std::uint64_t frame) {
    if (count == 0) {
        first = frame;
    } else {
        longest_interval = std::max(longest_interval, frame - std::min(frame, last));
    }
    last = frame;
    ++count;
}

std::optional<double> receptions::mean_interval() const {
    if (count < 2) return std::nullopt;
    return static_cast<double>(last - first) / static_cast<double>(count - 1);
}

void directory_version::names::add(const std::string& name) {
    ++count;
    if (first.size() < kNamesKept) first.push_back(name);
}

std::optional<double> carousel_statistics::cycle() const {
    std::optional<double> longest;
    for (const object_statistics& object : objects) {
        const auto interval = object.times.mean_interval();
        if (interval && (!longest || *interval > *longest)) longest = interval;
    }
    return longest;
}

}  // namespace dabspi::air

#include "tools/check/lanes.h"

#include <algorithm>

namespace dabspi::check {

std::vector<lane_place> lanes_of(const std::vector<time_span>& spans) {
    std::vector<lane_place> places;
    std::vector<long> free_from;  // of each lane of the group
    std::size_t group = 0;        // its first span
    long group_end = 0;
    const auto close_group = [&] {
        for (std::size_t i = group; i < places.size(); ++i)
            places[i].of = free_from.size();
        free_from.clear();
        group = places.size();
    };
    for (const time_span& each : spans) {
        const long end = std::max(each.to, each.from + 1);
        if (group == places.size() || each.from >= group_end) {
            close_group();
            group_end = end;
        }
        auto lane = std::find_if(free_from.begin(), free_from.end(),
                                 [&](long minute) { return minute <= each.from; });
        if (lane == free_from.end() && free_from.size() < kMostLanes)
            lane = free_from.insert(lane, each.from);
        if (lane == free_from.end()) --lane;
        places.push_back({static_cast<std::size_t>(lane - free_from.begin()), 0});
        *lane = std::max(*lane, end);
        group_end = std::max(group_end, end);
    }
    close_group();
    return places;
}

}  // namespace dabspi::check

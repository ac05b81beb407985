#include "tools/check/overlap_rows.h"

#include <algorithm>

namespace dabspi::check {

std::vector<row_position> rows_of(const std::vector<time_span>& spans) {
    std::vector<row_position> positions;
    std::vector<long> free_from;  // of each row of the group
    std::size_t group = 0;        // its first span
    long group_end = 0;
    const auto close_group = [&] {
        for (std::size_t i = group; i < positions.size(); ++i)
            positions[i].of = free_from.size();
        free_from.clear();
        group = positions.size();
    };
    for (const time_span& each : spans) {
        const long end = std::max(each.to, each.from + 1);
        if (group == positions.size() || each.from >= group_end) {
            close_group();
            group_end = end;
        }
        auto row = std::find_if(free_from.begin(), free_from.end(),
                                [&](long minute) { return minute <= each.from; });
        if (row == free_from.end() && free_from.size() < kMostRows) row = free_from.insert(row, each.from);
        if (row == free_from.end()) --row;
        positions.push_back({static_cast<std::size_t>(row - free_from.begin()), 0});
        *row = std::max(*row, end);
        group_end = std::max(group_end, end);
    }
    close_group();
    return positions;
}

}  // namespace dabspi::check

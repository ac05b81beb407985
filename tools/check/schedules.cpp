#include "tools/check/schedules.h"

#include <algorithm>

#include "tools/check/local_day.h"

namespace dabspi::check {

std::vector<service_schedule> schedules_of(const history& in) {
    // Service, day, life; then minute to programme.
    using one_life = std::map<long, std::size_t>;
    std::map<spi::ServElemId, std::map<long, std::map<std::size_t, one_life>>> received;
    for (const spi::ServElemId& service : in.listened)
        if (service.sid != 0) received[service];
    for (std::size_t i = 0; i < in.programmes.size(); ++i) {
        const programme_arrival& each = in.programmes[i];
        if (each.fate == programme_arrival::filed && !each.unreachable)
            received[each.service][each.start / kDayMinutes][each.life][each.start] = i;
    }
    std::vector<service_schedule> all;
    for (const auto& [service, days] : received) {
        service_schedule schedule;
        schedule.service = service;
        const auto name = in.names.find(service);
        if (name != in.names.end()) schedule.name = name->second;
        for (const auto& [day, lives] : days) {
            const auto fullest = std::max_element(
                lives.begin(), lives.end(),
                [](const auto& a, const auto& b) { return a.second.size() < b.second.size(); });
            for (const auto& [minute, index] : fullest->second)
                schedule.programmes.push_back(index);
        }
        all.push_back(std::move(schedule));
    }
    return all;
}

}  // namespace dabspi::check

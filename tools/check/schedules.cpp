#include "tools/check/schedules.h"

#include <algorithm>
#include <iterator>

#include "tools/check/local_day.h"

namespace dabspi::check {

std::vector<service_schedule> schedules_of(const history& in) {
    // Service, day, reception; then minute to programme.
    using one_reception = std::map<long, std::size_t>;
    std::map<spi::ServElemId, std::map<long, std::map<std::size_t, one_reception>>> received;
    for (const spi::ServElemId& service : in.listened)
        if (service.sid != 0) received[service];
    for (std::size_t i = 0; i < in.programmes.size(); ++i) {
        const programme_arrival& each = in.programmes[i];
        if (each.outcome == programme_arrival::filed && !each.unreachable)
            received[each.service][each.start / kDayMinutes][each.reception][each.start] = i;
    }
    std::vector<service_schedule> all;
    for (const auto& [service, days] : received) {
        service_schedule schedule;
        schedule.service = service;
        const auto name = in.names.find(service);
        if (name != in.names.end()) schedule.name = name->second;
        for (const auto& [day, receptions] : days) {
            const auto fullest = std::max_element(
                receptions.begin(), receptions.end(),
                [](const auto& a, const auto& b) { return a.second.size() < b.second.size(); });
            for (const auto& [minute, index] : fullest->second)
                schedule.programmes.push_back(index);
        }
        all.push_back(std::move(schedule));
    }
    return all;
}

std::vector<schedule_boundary> boundaries_of(const history& in, const service_schedule& schedule) {
    std::vector<schedule_boundary> all;
    if (schedule.programmes.empty()) return all;
    std::size_t longest = schedule.programmes.front();
    for (auto each = std::next(schedule.programmes.begin()); each != schedule.programmes.end(); ++each) {
        const programme_arrival& programme = in.programmes[*each];
        const long end = in.programmes[longest].end();
        if (programme.start != end) all.push_back({longest, *each});
        if (programme.end() > end) longest = *each;
    }
    return all;
}

}  // namespace dabspi::check

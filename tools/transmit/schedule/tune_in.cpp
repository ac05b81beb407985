#include "tools/transmit/schedule/tune_in.h"

#include <algorithm>
#include <map>

namespace dabspi::transmit {

namespace {

constexpr double kSecondsOfFrame = 0.024;
constexpr std::size_t kMostMoments = 1000;
constexpr std::size_t kMostLooks = 20'000'000;  // at segments

using cell_number = std::uint64_t;

// When each segment is sent within the stretch, in order.
class transmissions {
 public:
    transmissions(const sent_carousel& carousel, const sending_order& order, const stretch& sent)
        : cells_(sent.cells), first_(carousel.entities.size() + 1) {
        for (std::size_t i = 0; i < carousel.entities.size(); ++i)
            first_[i + 1] = first_[i] + carousel.entities[i].groups.size();
        times_.resize(first_.back());
        for (std::size_t i = 0; i < order.size(); ++i)
            times_[first_[order[i].entity] + order[i].segment].push_back(sent.groups[i]);
    }

    std::size_t segments() const { return times_.size(); }

    // The cell behind which the entity is whole for a receiver that begins at `from`.
    cell_number whole(std::size_t entity, cell_number from) const {
        cell_number last = from;
        for (std::size_t i = first_[entity]; i < first_[entity + 1]; ++i)
            last = std::max(last, received(times_[i], from));
        return last;
    }

 private:
    cell_number received(const std::vector<group_cells>& times, cell_number from) const {
        const cell_number in_stretch = from % cells_;
        const cell_number begin = from - in_stretch;
        const auto next =
            std::lower_bound(times.begin(), times.end(), in_stretch,
                             [](const group_cells& each, cell_number at) { return each.first < at; });
        if (next != times.end()) return begin + next->end;
        return begin + cells_ + times.front().end;
    }

    const cell_number cells_;
    std::vector<std::size_t> first_;  // by entity, in times_
    std::vector<std::vector<group_cells>> times_;
};

wait wait_of(std::vector<cell_number> cells, double seconds_of_cell) {
    wait result;
    if (cells.empty()) return result;
    std::sort(cells.begin(), cells.end());
    result.any = true;
    result.median = static_cast<double>(cells[cells.size() / 2]) * seconds_of_cell;
    result.worst = static_cast<double>(cells.back()) * seconds_of_cell;
    return result;
}

}  // namespace

waits tune_in(const sent_carousel& carousel, const sending_order& order, const stretch& sent,
              const std::vector<tuned_object>& objects) {
    const transmissions times(carousel, order, sent);
    std::map<std::string, std::vector<std::size_t>> services;
    for (std::size_t i = 0; i < objects.size(); ++i)
        if (objects[i].what == importance::today) services[objects[i].service].push_back(i);

    const std::size_t looks = std::max<std::size_t>(times.segments(), 1) * 2;
    const std::size_t moments =
        std::clamp<std::size_t>(std::min<std::size_t>(kMostLooks / looks, sent.cells), 1, kMostMoments);
    std::vector<cell_number> now_next;
    std::vector<cell_number> logos;
    std::vector<cell_number> everything;
    std::vector<cell_number> whole(objects.size());
    for (std::size_t moment = 0; moment < moments; ++moment) {
        const cell_number begin = moment * sent.cells / moments;
        cell_number listed = begin;
        bool any_directory = false;
        for (std::size_t i = 0; i < carousel.entities.size() && !carousel.entities[i].object; ++i) {
            const cell_number at = times.whole(i, begin);
            listed = any_directory ? std::min(listed, at) : at;
            any_directory = true;
        }
        cell_number described = listed;
        const auto collect = [&](bool of_logos, cell_number from) {
            for (std::size_t i = 0; i < carousel.entities.size(); ++i) {
                const auto& object = carousel.entities[i].object;
                if (!object || (objects[*object].what == importance::logo) != of_logos) continue;
                cell_number& at = whole[*object];
                at = std::max(at, times.whole(i, from));
            }
        };
        std::fill(whole.begin(), whole.end(), 0);
        collect(false, listed);
        for (std::size_t i = 0; i < objects.size(); ++i)
            if (objects[i].what == importance::service_information) described = std::max(described, whole[i]);
        collect(true, described);
        for (const auto& [service, its] : services) {
            cell_number at = 0;
            for (const std::size_t each : its)
                at = std::max(at, whole[each]);
            now_next.push_back(at - begin);
        }
        cell_number last_logo = 0;
        cell_number last = 0;
        for (std::size_t i = 0; i < objects.size(); ++i) {
            if (objects[i].what == importance::logo) last_logo = std::max(last_logo, whole[i]);
            last = std::max(last, whole[i]);
        }
        if (last_logo != 0) logos.push_back(last_logo - begin);
        if (last != 0) everything.push_back(last - begin);
    }
    const double seconds = kSecondsOfFrame * sent.frames / static_cast<double>(sent.cells);
    return {wait_of(std::move(now_next), seconds), wait_of(std::move(logos), seconds),
            wait_of(std::move(everything), seconds)};
}

}  // namespace dabspi::transmit

#include "tools/transmit/schedule/tune_in.h"

#include <algorithm>
#include <map>

namespace dabspi::transmit {

namespace {

constexpr double kSecondsOfFrame = 0.024;
constexpr std::size_t kMostMoments = 1000;
constexpr std::size_t kMostLooks = 20'000'000;  // at segments

using frame_number = std::uint64_t;

// When each segment is sent within the stretch, in order.
class transmissions {
 public:
    transmissions(const sent_carousel& carousel, const sending_order& order, const stretch& sent)
        : frames_(sent.frames), first_(carousel.entities.size() + 1) {
        for (std::size_t i = 0; i < carousel.entities.size(); ++i)
            first_[i + 1] = first_[i] + carousel.entities[i].groups.size();
        times_.resize(first_.back());
        for (std::size_t i = 0; i < order.size(); ++i)
            times_[first_[order[i].entity] + order[i].segment].push_back(sent.groups[i]);
    }

    std::size_t segments() const { return times_.size(); }

    // The frame after which the entity is whole for a receiver that begins at `from`.
    frame_number whole(std::size_t entity, frame_number from) const {
        frame_number last = from;
        for (std::size_t i = first_[entity]; i < first_[entity + 1]; ++i)
            last = std::max(last, received(times_[i], from));
        return last;
    }

 private:
    frame_number received(const std::vector<group_frames>& times, frame_number from) const {
        const frame_number in_stretch = from % frames_;
        const frame_number begin = from - in_stretch;
        const auto next =
            std::lower_bound(times.begin(), times.end(), in_stretch,
                             [](const group_frames& each, frame_number at) { return each.first < at; });
        if (next != times.end()) return begin + next->last + 1;
        return begin + frames_ + times.front().last + 1;
    }

    const frame_number frames_;
    std::vector<std::size_t> first_;  // by entity, in times_
    std::vector<std::vector<group_frames>> times_;
};

wait wait_of(std::vector<frame_number> frames) {
    wait result;
    if (frames.empty()) return result;
    std::sort(frames.begin(), frames.end());
    result.any = true;
    result.median = static_cast<double>(frames[frames.size() / 2]) * kSecondsOfFrame;
    result.worst = static_cast<double>(frames.back()) * kSecondsOfFrame;
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
        std::clamp<std::size_t>(std::min<std::size_t>(kMostLooks / looks, sent.frames), 1, kMostMoments);
    std::vector<frame_number> now_next;
    std::vector<frame_number> logos;
    std::vector<frame_number> everything;
    std::vector<frame_number> whole(objects.size());
    for (std::size_t moment = 0; moment < moments; ++moment) {
        const frame_number begin = moment * sent.frames / moments;
        frame_number listed = begin;
        bool any_directory = false;
        for (std::size_t i = 0; i < carousel.entities.size() && !carousel.entities[i].object; ++i) {
            const frame_number at = times.whole(i, begin);
            listed = any_directory ? std::min(listed, at) : at;
            any_directory = true;
        }
        frame_number described = listed;
        const auto collect = [&](bool of_logos, frame_number from) {
            for (std::size_t i = 0; i < carousel.entities.size(); ++i) {
                const auto& object = carousel.entities[i].object;
                if (!object || (objects[*object].what == importance::logo) != of_logos) continue;
                frame_number& at = whole[*object];
                at = std::max(at, times.whole(i, from));
            }
        };
        std::fill(whole.begin(), whole.end(), 0);
        collect(false, listed);
        for (std::size_t i = 0; i < objects.size(); ++i)
            if (objects[i].what == importance::service_information) described = std::max(described, whole[i]);
        collect(true, described);
        for (const auto& [service, its] : services) {
            frame_number at = 0;
            for (const std::size_t each : its)
                at = std::max(at, whole[each]);
            now_next.push_back(at - begin);
        }
        frame_number last_logo = 0;
        frame_number last = 0;
        for (std::size_t i = 0; i < objects.size(); ++i) {
            if (objects[i].what == importance::logo) last_logo = std::max(last_logo, whole[i]);
            last = std::max(last, whole[i]);
        }
        if (last_logo != 0) logos.push_back(last_logo - begin);
        if (last != 0) everything.push_back(last - begin);
    }
    return {wait_of(std::move(now_next)), wait_of(std::move(logos)), wait_of(std::move(everything))};
}

}  // namespace dabspi::transmit

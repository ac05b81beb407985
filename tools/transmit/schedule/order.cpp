#include "tools/transmit/schedule/order.h"

#include <algorithm>
#include <cmath>
#include <queue>

namespace dabspi::transmit {

namespace {

constexpr std::size_t kGroupContinuityValues = 16;
constexpr double kMostCopies = 256;
// Rounds of what comes least often, until closing the stretch costs little of it.
constexpr double kMostRounds = 8;
constexpr double kLongEnough = 600e3;  // bytes
// What is urgent comes so many times as often as anything else, at least.
constexpr std::size_t kTimesOfUrgent = 2;
// What interrupts an object saves at least this part of its own interval.
constexpr double kWorthInterrupting = 0.05;
// Of schedules, for each byte of the directory and the service information in front of them.
constexpr double kSchedulesOfBlock = 4;

// Classes of what is sent in one piece. The first is a block of directory, service information and today's
// schedules, in this order: a receiver that has the one then gets the other at once.
constexpr std::size_t kClasses = 4;
constexpr std::size_t kUrgent = 0;
constexpr std::array<double, kClasses> kWeights = {4, 2, 1, 0.7};

std::size_t class_of(importance of) {
    switch (of) {
        case importance::service_information:
        case importance::today: return kUrgent;
        case importance::logo: return 1;
        case importance::tomorrow: return 2;
        case importance::other: break;
    }
    return 3;
}

// What is sent in one piece.
struct unit {
    std::vector<std::uint32_t> entities;
    std::size_t size = 0;
    std::size_t of_class = 0;

    void add(const unit& more) {
        entities.insert(entities.end(), more.entities.begin(), more.entities.end());
        size += more.size;
    }
};

// A body with its header, the forms of the directory; in the order of the carousel.
struct carousel_units {
    unit directory;
    unit descriptions;  // all service information
    std::vector<unit> today;
    std::vector<unit> others;
};

carousel_units units_of(const sent_carousel& of, const std::vector<importance>& importances) {
    carousel_units all;
    for (std::size_t i = 0; i < of.entities.size();) {
        const std::optional<std::size_t> object = of.entities[i].object;
        unit made;
        for (; i < of.entities.size() && of.entities[i].object == object; ++i)
            made.add({{static_cast<std::uint32_t>(i)}, of.entities[i].bytes_of_groups(), 0});
        if (!object) {
            all.directory = std::move(made);
        } else if (importances[*object] == importance::service_information) {
            all.descriptions.add(made);
        } else if (importances[*object] == importance::today) {
            all.today.push_back(std::move(made));
        } else {
            made.of_class = class_of(importances[*object]);
            all.others.push_back(std::move(made));
        }
    }
    return all;
}

// Many schedules are several blocks, each with the directory in front.
std::vector<unit> blocks_of(const carousel_units& all) {
    unit front = all.directory;
    front.add(all.descriptions);
    std::vector<unit> blocks;
    unit block = front;
    for (const unit& each : all.today) {
        const double schedules = static_cast<double>(block.size - front.size);
        if (block.size != front.size && schedules + static_cast<double>(each.size) >
                                            kSchedulesOfBlock * static_cast<double>(front.size)) {
            blocks.push_back(std::move(block));
            block = front;
        }
        block.add(each);
    }
    if (!block.entities.empty()) blocks.push_back(std::move(block));
    return blocks;
}

struct transmission {
    double due = 0;  // bytes from the beginning of the stretch
    std::size_t of_class = 0;
    std::size_t rank = 0;  // of the unit in its class
    std::size_t unit = 0;
};
struct later {
    bool operator()(const transmission& a, const transmission& b) const {
        if (a.due != b.due) return a.due > b.due;
        if (a.of_class != b.of_class) return a.of_class > b.of_class;
        return a.rank > b.rank;
    }
};

using class_queue = std::priority_queue<transmission, std::vector<transmission>, later>;

class spreading {
 public:
    spreading(const sent_carousel& of, const std::vector<importance>& importances) : of_(of) {
        const carousel_units all = units_of(of, importances);
        units_ = blocks_of(all);
        units_.insert(units_.end(), all.others.begin(), all.others.end());
        choose_copies();
        plan_transmissions();
    }

    sending_order take() {
        while (class_queue* const next = earliest())
            send_first(*next);
        return std::move(order_);
    }

 private:
    void choose_copies() {
        std::array<double, kClasses> interval{};
        for (const unit& each : units_) {
            sizes_[each.of_class] += static_cast<double>(each.size);
            ++counts_[each.of_class];
        }
        for (std::size_t i = 0; i < kClasses; ++i)
            interval[i] = std::sqrt(sizes_[i] / kWeights[i]);
        std::array<std::size_t, kClasses> by_interval = {0, 1, 2, 3};
        std::sort(by_interval.begin(), by_interval.end(),
                  [&](std::size_t x, std::size_t y) { return interval[x] > interval[y]; });
        std::size_t copies = 1;
        double before = interval[by_interval.front()];
        for (const std::size_t each : by_interval) {
            if (counts_[each] == 0) continue;
            const double times = std::max(std::round(before / interval[each]), 1.0);
            if (static_cast<double>(copies) * times <= kMostCopies) copies *= static_cast<std::size_t>(times);
            copies_[each] = copies;
            before = interval[each];
        }
        std::size_t others = 0;
        for (std::size_t i = 0; i < kClasses; ++i)
            if (i != kUrgent) others = std::max(others, copies_[i]);
        copies_[kUrgent] = std::max(copies_[kUrgent], kTimesOfUrgent * others);
        for (std::size_t i = 0; i < kClasses; ++i)
            all_ += static_cast<double>(copies_[i]) * sizes_[i];
        const double rounds = std::clamp(std::ceil(kLongEnough / all_), 1.0, kMostRounds);
        for (std::size_t& each : copies_)
            each *= static_cast<std::size_t>(rounds);
        all_ *= rounds;
    }

    void plan_transmissions() {
        std::array<std::size_t, kClasses> rank{};
        for (std::size_t i = 0; i < units_.size(); ++i) {
            const std::size_t its = units_[i].of_class;
            const double of_class = static_cast<double>(rank[its]) / static_cast<double>(counts_[its]);
            for (std::size_t copy = 0; copy < copies_[its]; ++copy)
                waiting_[its].push(
                    {(static_cast<double>(copy) + of_class) * interval_of(its), its, rank[its], i});
            ++rank[its];
        }
    }

    double interval_of(std::size_t a_class) const { return all_ / static_cast<double>(copies_[a_class]); }

    void send_first(class_queue& from) {
        const transmission what = from.top();
        from.pop();
        double left = static_cast<double>(units_[what.unit].size);
        for (const std::uint32_t entity : units_[what.unit].entities) {
            const std::vector<bytes>& groups = of_.entities[entity].groups;
            for (std::uint32_t segment = 0; segment < groups.size(); ++segment) {
                if (what.of_class != kUrgent && is_urgent(left)) send_first(waiting_[kUrgent]);
                order_.push_back({entity, segment});
                sent_ += static_cast<double>(groups[segment].size());
                left -= static_cast<double>(groups[segment].size());
            }
        }
    }

    class_queue* earliest() {
        class_queue* first = nullptr;
        for (class_queue& each : waiting_)
            if (!each.empty() && (first == nullptr || later()(first->top(), each.top()))) first = &each;
        return first;
    }

    // A block is due, and so much of something else is left that it does not wait for its end.
    bool is_urgent(double left) const {
        return !waiting_[kUrgent].empty() && waiting_[kUrgent].top().due <= sent_ &&
               left > kWorthInterrupting * interval_of(kUrgent);
    }

    const sent_carousel& of_;
    std::vector<unit> units_;
    std::array<double, kClasses> sizes_{};
    std::array<std::size_t, kClasses> counts_{};
    std::array<std::size_t, kClasses> copies_{};
    double all_ = 0;  // bytes of the stretch
    std::array<class_queue, kClasses> waiting_;
    sending_order order_;
    double sent_ = 0;
};

}  // namespace

const char* importance_text(importance of) {
    switch (of) {
        case importance::service_information: return "service information";
        case importance::today: return "today's schedules";
        case importance::logo: return "logos that receivers show";
        case importance::tomorrow: return "tomorrow's schedules";
        case importance::other: break;
    }
    return "everything else";
}

sending_order computed_order(const sent_carousel& of, const std::vector<importance>& importances) {
    return spreading(of, importances).take();
}

sending_order plain_order(const sent_carousel& of) {
    sending_order order;
    for (std::uint32_t entity = 0; entity < of.entities.size(); ++entity)
        for (std::uint32_t segment = 0; segment < of.entities[entity].groups.size(); ++segment)
            order.push_back({entity, segment});
    return order;
}

void close_order(sending_order& order, const sent_carousel& of) {
    std::array<std::size_t, kGroupTypes> missing{};
    const auto type_of = [&](const planned_segment& each) {
        return static_cast<std::size_t>(of.entities[each.entity].type);
    };
    for (const planned_segment& each : order)
        ++missing[type_of(each)];
    for (std::size_t& each : missing)
        each = (kGroupContinuityValues - each % kGroupContinuityValues) % kGroupContinuityValues;
    const auto any_missing = [&] {
        return std::any_of(missing.begin(), missing.end(), [](std::size_t each) { return each != 0; });
    };
    for (std::size_t i = 0; any_missing(); ++i) {
        const planned_segment again = order[i];
        if (missing[type_of(again)] == 0) continue;
        --missing[type_of(again)];
        order.push_back(again);
    }
}

}  // namespace dabspi::transmit

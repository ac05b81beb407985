#include "tools/transmit/schedule/order.h"

#include <algorithm>
#include <cmath>
#include <queue>

namespace dabspi::transmit {

namespace {

constexpr std::size_t kGroupContinuityValues = 16;
constexpr std::size_t kMostCopies = 64;
constexpr std::size_t kInterruptsWhenOftenBy = 4;

// What is sent together and in one piece: a directory, in one form or both; a body, with its header.
struct unit {
    std::vector<std::uint32_t> entities;
    std::size_t size = 0;
    std::size_t urgency = 0;  // 0: the directory, then the importances
};

constexpr std::size_t kUrgencies = kImportances + 1;
// The directory is needed for everything; names, and with them the logos, need the service information.
constexpr std::array<double, kUrgencies> kWeights = {16, 12, 8, 3, 1.5, 1};

std::vector<unit> units_of(const sent_carousel& of, const std::vector<importance>& importances) {
    std::vector<unit> units;
    std::optional<std::size_t> object;
    bool first = true;
    for (std::uint32_t i = 0; i < of.entities.size(); ++i) {
        const sent_entity& each = of.entities[i];
        if (first || each.object != object) {
            units.emplace_back();
            units.back().urgency = each.object ? 1 + static_cast<std::size_t>(importances[*each.object]) : 0;
        }
        first = false;
        object = each.object;
        units.back().entities.push_back(i);
        units.back().size += each.bytes_of_groups();
    }
    return units;
}

struct transmission {
    double due = 0;  // bytes from the beginning of the stretch
    std::size_t urgency = 0;
    std::size_t rank = 0;  // of the unit in its class
    std::size_t unit = 0;
};
struct later {
    bool operator()(const transmission& a, const transmission& b) const {
        if (a.due != b.due) return a.due > b.due;
        if (a.urgency != b.urgency) return a.urgency > b.urgency;
        return a.rank > b.rank;
    }
};

class spreading {
 public:
    spreading(const sent_carousel& of, const std::vector<importance>& importances)
        : of_(of), units_(units_of(of, importances)) {
        choose_copies();
        plan_transmissions();
    }

    sending_order take() {
        while (!waiting_.empty()) {
            const transmission next = waiting_.top();
            waiting_.pop();
            send(next);
        }
        return std::move(order_);
    }

 private:
    void choose_copies() {
        std::array<double, kUrgencies> interval{};
        double longest = 0;
        for (const unit& each : units_) {
            sizes_[each.urgency] += static_cast<double>(each.size);
            ++counts_[each.urgency];
        }
        for (std::size_t i = 0; i < kUrgencies; ++i) {
            interval[i] = std::sqrt(sizes_[i] / kWeights[i]);
            longest = std::max(longest, interval[i]);
        }
        for (std::size_t i = 0; i < kUrgencies; ++i) {
            if (counts_[i] == 0) continue;
            const double copies = std::round(longest / interval[i]);
            copies_[i] = static_cast<std::size_t>(std::clamp(copies, 1.0, double{kMostCopies}));
        }
    }

    void plan_transmissions() {
        double all = 0;
        for (std::size_t i = 0; i < kUrgencies; ++i)
            all += static_cast<double>(copies_[i]) * sizes_[i];
        std::array<std::size_t, kUrgencies> rank{};
        for (std::size_t i = 0; i < units_.size(); ++i) {
            const std::size_t urgency = units_[i].urgency;
            const double of_class =
                static_cast<double>(rank[urgency]) / static_cast<double>(counts_[urgency]);
            for (std::size_t copy = 0; copy < copies_[urgency]; ++copy) {
                const double due =
                    (static_cast<double>(copy) + of_class) / static_cast<double>(copies_[urgency]) * all;
                waiting_.push({due, urgency, rank[urgency], i});
            }
            ++rank[urgency];
        }
    }

    void send(const transmission& what) {
        for (const std::uint32_t entity : units_[what.unit].entities) {
            const std::vector<bytes>& groups = of_.entities[entity].groups;
            for (std::uint32_t segment = 0; segment < groups.size(); ++segment) {
                while (interrupts(what)) {
                    const transmission first = waiting_.top();
                    waiting_.pop();
                    send(first);
                }
                order_.push_back({entity, segment});
                sent_ += static_cast<double>(groups[segment].size());
            }
        }
    }

    bool interrupts(const transmission& what) const {
        return !waiting_.empty() && waiting_.top().due <= sent_ &&
               copies_[waiting_.top().urgency] >= kInterruptsWhenOftenBy * copies_[what.urgency];
    }

    const sent_carousel& of_;
    const std::vector<unit> units_;
    std::array<double, kUrgencies> sizes_{};
    std::array<std::size_t, kUrgencies> counts_{};
    std::array<std::size_t, kUrgencies> copies_{};
    std::priority_queue<transmission, std::vector<transmission>, later> waiting_;
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

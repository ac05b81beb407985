#include "tools/transmit/schedule/order.h"

#include <algorithm>
#include <cmath>
#include <queue>

namespace dabspi::transmit {

namespace {

constexpr std::size_t kGroupContinuityValues = 16;
constexpr double kMostCopies = 256;
// Intervals are whole parts of the stretch; where what comes least often comes several times in it, they are
// nearer to what was computed.
constexpr double kMostOfTheLeast = 4;
constexpr double kLongestStretch = 16e6;  // bytes
// At most so long is the interval of service information to that of images, of today to that of tomorrow.
constexpr double kMoreOften = 0.75;
constexpr std::size_t kInterruptsWhenOftenBy = 4;

// What is sent together and in one piece: a directory, in one form or both; a body, with its header.
struct unit {
    std::vector<std::uint32_t> entities;
    std::size_t size = 0;
    std::size_t urgency = 0;  // 0: the directory, then the importances
};

constexpr std::size_t kUrgencies = kImportances + 1;
constexpr std::size_t kServiceInformation = 1;
constexpr std::size_t kToday = 2;
constexpr std::size_t kLogo = 3;
constexpr std::size_t kTomorrow = 4;
constexpr std::size_t kOther = 5;
// The directory is needed for everything; names, and with them the logos, need the service information.
constexpr std::array<double, kUrgencies> kWeights = {4, 2.5, 3, 3, 1, 0.5};

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

using class_queue = std::priority_queue<transmission, std::vector<transmission>, later>;

class spreading {
 public:
    spreading(const sent_carousel& of, const std::vector<importance>& importances)
        : of_(of), units_(units_of(of, importances)) {
        choose_copies();
        plan_transmissions();
    }

    sending_order take() {
        while (const class_queue* const next = earliest()) {
            send_first(next->top().urgency);
        }
        return std::move(order_);
    }

 private:
    void choose_copies() {
        std::array<double, kUrgencies> interval{};
        for (const unit& each : units_) {
            sizes_[each.urgency] += static_cast<double>(each.size);
            ++counts_[each.urgency];
        }
        for (std::size_t i = 0; i < kUrgencies; ++i)
            interval[i] = std::sqrt(sizes_[i] / kWeights[i]);
        for (const std::size_t other : {kLogo, kOther})
            if (counts_[other] != 0)
                interval[kServiceInformation] =
                    std::min(interval[kServiceInformation], kMoreOften * interval[other]);
        if (counts_[kTomorrow] != 0)
            interval[kToday] = std::min(interval[kToday], kMoreOften * interval[kTomorrow]);
        const double longest = *std::max_element(interval.begin(), interval.end());
        double size = 0;  // of a stretch that has what comes least often once
        for (std::size_t i = 0; i < kUrgencies; ++i)
            if (counts_[i] != 0) size += longest / interval[i] * sizes_[i];
        const double least = std::clamp(std::floor(kLongestStretch / size), 1.0, kMostOfTheLeast);
        for (std::size_t i = 0; i < kUrgencies; ++i) {
            if (counts_[i] == 0) continue;
            const double copies = std::round(least * longest / interval[i]);
            copies_[i] = static_cast<std::size_t>(std::clamp(copies, 1.0, kMostCopies));
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
                waiting_[urgency].push({due, urgency, rank[urgency], i});
            }
            ++rank[urgency];
        }
    }

    void send_first(std::size_t urgency) {
        const transmission what = waiting_[urgency].top();
        waiting_[urgency].pop();
        for (const std::uint32_t entity : units_[what.unit].entities) {
            const std::vector<bytes>& groups = of_.entities[entity].groups;
            for (std::uint32_t segment = 0; segment < groups.size(); ++segment) {
                while (const class_queue* const first = interrupting(what))
                    send_first(first->top().urgency);
                order_.push_back({entity, segment});
                sent_ += static_cast<double>(groups[segment].size());
            }
        }
    }

    class_queue* earliest() {
        class_queue* first = nullptr;
        for (class_queue& each : waiting_)
            if (!each.empty() && (first == nullptr || later()(first->top(), each.top()))) first = &each;
        return first;
    }

    // What is due and does not wait for the end of `what`; null for nothing.
    class_queue* interrupting(const transmission& what) {
        for (std::size_t i = 0; i < kUrgencies; ++i)
            if (!waiting_[i].empty() && waiting_[i].top().due <= sent_ &&
                copies_[i] >= kInterruptsWhenOftenBy * copies_[what.urgency])
                return &waiting_[i];
        return nullptr;
    }

    const sent_carousel& of_;
    const std::vector<unit> units_;
    std::array<double, kUrgencies> sizes_{};
    std::array<std::size_t, kUrgencies> counts_{};
    std::array<std::size_t, kUrgencies> copies_{};
    std::array<class_queue, kUrgencies> waiting_;
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

#include "tools/compare/programme_pairs.h"

#include <algorithm>
#include <limits>
#include <map>
#include <queue>
#include <string_view>
#include <tuple>

namespace dabspi::compare {

namespace {

using guide::programme;

constexpr std::int64_t kAnyDistance = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kSecondsOfDay = 86400;
constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

std::string_view name_in(const programme& of) {
    const guide::text* const name = of.names.first();
    return name == nullptr ? std::string_view() : std::string_view(name->value);
}

std::string_view id_in(const programme& of) {
    return of.id;
}

bool is_same(const programme& a, const programme& b) {
    return (!a.id.empty() && a.id == b.id) || name_in(a) == name_in(b);
}

// A programme that has no partner yet, in the order of time among those with its key.
struct waiting {
    std::string_view key;
    std::int64_t start = 0;
    bool in_b = false;
    std::size_t index = 0;
    std::size_t before = kNone;  // its neighbours of the same key
    std::size_t after = kNone;
    bool taken = false;
};

class pairing {
 public:
    pairing(const guide::service& a, const guide::service& b)
        : a_(a.programmes),
          b_(b.programmes),
          of_a_(a_.size(), kNone),
          of_b_(b_.size(), kNone),
          out_a_(a_.size()),
          out_b_(b_.size()) {}

    // Nearly all of them, and fast.
    void same_start() {
        std::size_t j = 0;
        for (std::size_t i = 0; i < a_.size(); ++i) {
            while (j < b_.size() && b_[j].start < a_[i].start)
                ++j;
            if (j < b_.size() && b_[j].start == a_[i].start && is_same(a_[i], b_[j])) pair(i, j);
        }
    }

    // Those of the same key, nearest first. Without `empty_too` an empty key matches nothing.
    template <class Key>
    void nearest(std::int64_t limit, bool empty_too, const Key& key) {
        std::vector<waiting> all;
        const auto gather = [&](const std::vector<programme>& from, const std::vector<std::size_t>& partner,
                                const std::vector<bool>& out, bool in_b) {
            for (std::size_t i = 0; i < from.size(); ++i) {
                if (partner[i] != kNone || out[i]) continue;
                const std::string_view its = key(from[i]);
                if (!its.empty() || empty_too) all.push_back({its, from[i].start, in_b, i});
            }
        };
        gather(a_, of_a_, out_a_, false);
        gather(b_, of_b_, out_b_, true);
        std::sort(all.begin(), all.end(), [](const waiting& x, const waiting& y) {
            return std::tie(x.key, x.start, x.in_b) < std::tie(y.key, y.start, y.in_b);
        });
        pair_nearest(all, limit);
    }

    // Takes the days out that only one side has, and of which nothing is paired.
    void leave_days_out(const local_days& days, paired_programmes& into) {
        struct counted {
            std::size_t a = 0, b = 0;
            bool paired = false;
        };
        std::map<long, counted> all;
        for (std::size_t i = 0; i < a_.size(); ++i) {
            counted& day = all[days.of(a_[i].start)];
            ++day.a;
            if (of_a_[i] != kNone) day.paired = true;
        }
        for (std::size_t i = 0; i < b_.size(); ++i) {
            counted& day = all[days.of(b_[i].start)];
            ++day.b;
            if (of_b_[i] != kNone) day.paired = true;
        }
        const auto is_out = [](const counted& day) { return !day.paired && (day.a == 0 || day.b == 0); };
        for (const auto& [day, count] : all)
            if (is_out(count))
                (count.b == 0 ? into.days_a : into.days_b).emplace_back(day, count.a + count.b);
        for (std::size_t i = 0; i < a_.size(); ++i)
            out_a_[i] = is_out(all[days.of(a_[i].start)]);
        for (std::size_t i = 0; i < b_.size(); ++i)
            out_b_[i] = is_out(all[days.of(b_[i].start)]);
    }

    void finish(paired_programmes& into) const {
        for (std::size_t i = 0; i < a_.size(); ++i) {
            if (of_a_[i] != kNone)
                into.pairs.emplace_back(&a_[i], &b_[of_a_[i]]);
            else if (!out_a_[i])
                into.only_a.push_back(&a_[i]);
        }
        for (std::size_t i = 0; i < b_.size(); ++i)
            if (of_b_[i] == kNone && !out_b_[i]) into.only_b.push_back(&b_[i]);
    }

 private:
    void pair(std::size_t a, std::size_t b) {
        of_a_[a] = b;
        of_b_[b] = a;
    }

    // The nearest two of different sides always stand beside each other.
    void pair_nearest(std::vector<waiting>& all, std::int64_t limit) {
        using candidate = std::tuple<std::int64_t, std::size_t, std::size_t>;  // distance, and the two
        std::priority_queue<candidate, std::vector<candidate>, std::greater<>> nearest;
        const auto offer = [&](std::size_t left, std::size_t right) {
            if (all[left].in_b == all[right].in_b) return;
            const std::int64_t distance = all[right].start - all[left].start;
            if (distance <= limit) nearest.emplace(distance, left, right);
        };
        for (std::size_t i = 1; i < all.size(); ++i) {
            if (all[i - 1].key != all[i].key) continue;
            all[i - 1].after = i;
            all[i].before = i - 1;
            offer(i - 1, i);
        }
        while (!nearest.empty()) {
            const auto [distance, left, right] = nearest.top();
            nearest.pop();
            if (all[left].taken || all[right].taken) continue;
            all[left].taken = all[right].taken = true;
            if (all[left].in_b)
                pair(all[right].index, all[left].index);
            else
                pair(all[left].index, all[right].index);
            const std::size_t before = all[left].before;
            const std::size_t after = all[right].after;
            if (before != kNone) all[before].after = after;
            if (after != kNone) all[after].before = before;
            if (before != kNone && after != kNone) offer(before, after);
        }
    }

    const std::vector<programme>& a_;
    const std::vector<programme>& b_;
    std::vector<std::size_t> of_a_;  // its partner's index
    std::vector<std::size_t> of_b_;
    std::vector<bool> out_a_;  // of a day that is told as a whole
    std::vector<bool> out_b_;
};

}  // namespace

local_days::local_days(const guide::service& a, const guide::service& b) {
    for (const guide::service* const each : {&a, &b}) {
        if (!offsets_.empty()) return;
        for (const programme& one : each->programmes)
            if (one.offset && (offsets_.empty() || offsets_.back().second != *one.offset))
                offsets_.emplace_back(one.start, *one.offset);
    }
}

long local_days::of(std::int64_t instant) const {
    std::int64_t local = instant;
    if (!offsets_.empty()) {
        auto after =
            std::upper_bound(offsets_.begin(), offsets_.end(), instant,
                             [](std::int64_t value, const auto& each) { return value < each.first; });
        if (after != offsets_.begin()) --after;
        local += after->second * 1800;
    }
    return static_cast<long>((local - (local % kSecondsOfDay + kSecondsOfDay) % kSecondsOfDay) /
                             kSecondsOfDay);
}

paired_programmes pair_programmes(const guide::service& a, const guide::service& b, const local_days& days,
                                  std::int64_t tolerance) {
    const auto any = [](const programme&) { return std::string_view(); };
    paired_programmes made;
    pairing of(a, b);
    of.same_start();
    of.nearest(tolerance, false, id_in);
    of.nearest(tolerance, false, name_in);
    of.leave_days_out(days, made);
    of.nearest(kAnyDistance, false, id_in);
    of.nearest(kAnyDistance, false, name_in);
    of.nearest(tolerance, true, any);
    of.finish(made);
    return made;
}

}  // namespace dabspi::compare

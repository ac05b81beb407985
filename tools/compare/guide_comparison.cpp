#include "tools/compare/guide_comparison.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <tuple>
#include <utility>

#include "tools/compare/described_differences.h"
#include "tools/compare/programme_pairs.h"
#include "tools/compare/time_words.h"
#include "tools/text/utf8.h"

namespace dabspi::compare {

namespace {

using guide::programme;
using guide::programme_guide;
using guide::service;
using kind = difference_kind;

std::string quoted(const programme& of) {
    const std::string name = name_of(of);
    return name.empty() ? "a programme without a name" : in_quotes(name);
}

std::string count_of_programmes(std::size_t count) {
    return " (" + std::to_string(count) + (count == 1 ? " programme)" : " programmes)");
}

std::string duration_words(std::uint32_t seconds) {
    return seconds == 0 ? std::string("of unknown length") : span_text(seconds);
}

// Gives each of A's services B's, or null.
std::vector<std::pair<const service*, const service*>> paired_services(const programme_guide& a,
                                                                       const programme_guide& b) {
    std::set<const service*> taken;
    std::vector<std::pair<const service*, const service*>> made;
    for (const service& each : a.services) {
        const service* const same = b.find(each.id);
        if (same != nullptr) taken.insert(same);
        made.emplace_back(&each, same);
    }
    std::multimap<std::pair<std::uint32_t, std::uint8_t>, const service*> free;
    for (const service& each : b.services)
        if (taken.count(&each) == 0) free.emplace(std::make_pair(each.id.sid, each.id.scids), &each);
    for (auto& [of_a, of_b] : made) {
        if (of_b != nullptr) continue;
        const auto [first, last] = free.equal_range({of_a->id.sid, of_a->id.scids});
        for (auto each = first; each != last; ++each)
            if (of_a->id.ecc == 0 || each->second->id.ecc == 0) {
                of_b = each->second;
                free.erase(each);
                break;
            }
    }
    for (const auto& [id, each] : free)
        made.emplace_back(nullptr, each);
    const auto id = [](const auto& pair) { return (pair.first != nullptr ? pair.first : pair.second)->id; };
    std::stable_sort(made.begin(), made.end(), [&](const auto& x, const auto& y) { return id(x) < id(y); });
    return made;
}

class guide_comparison {
 public:
    guide_comparison(const programme_guide& a, const programme_guide& b, const compare_settings& settings)
        : a_(a), b_(b), settings_(settings) {
        pictures_.both_have_images = a.counts.images != 0 && b.counts.images != 0;
    }

    comparison finish() {
        for (const auto& [a, b] : paired_services(a_, b_)) {
            const std::size_t first = made_.differences.size();
            if (b == nullptr)
                say(kind::service_missing, *a, "not in B" + count_of_programmes(a->programmes.size()));
            else if (a == nullptr)
                say(kind::service_added, *b, "only in B" + count_of_programmes(b->programmes.size()));
            else
                compare(*a, *b);
            std::stable_sort(made_.differences.begin() + static_cast<std::ptrdiff_t>(first),
                             made_.differences.end(), is_before);
        }
        if (pictures_.uncompared != 0 && settings_.ignored.count(kind::logo_picture) == 0)
            made_.said.push_back("the images of " + std::to_string(pictures_.uncompared) +
                                 (pictures_.uncompared == 1 ? " logo" : " logos") +
                                 " are not compared: only one side has images");
        return std::move(made_);
    }

 private:
    static std::int64_t instant_of(const difference& of) {
        return of.a != nullptr ? of.a->start : of.b != nullptr ? of.b->start : 0;
    }

    static bool is_before(const difference& x, const difference& y) {
        return std::make_tuple(x.kind, x.day.value_or(-1000000), instant_of(x)) <
               std::make_tuple(y.kind, y.day.value_or(-1000000), instant_of(y));
    }

    void say(kind what, const service& of, std::string text, std::optional<long> day = {},
             const programme* a = nullptr, const programme* b = nullptr) {
        if (settings_.ignored.count(what) == 0)
            made_.differences.push_back({what, &of, day, a, b, std::move(text)});
    }

    void compare(const service& a, const service& b) {
        if (a.announced && b.announced) {
            const std::string names = name_difference(a.names, b.names);
            if (!names.empty()) say(kind::service_renamed, a, names);
            described_part(a, a, b, {}, nullptr, nullptr, [] { return std::string(); });
        } else if (a.announced) {
            say(kind::service_information_missing, a, "B has programmes of it, and no service information");
        } else if (b.announced) {
            // A knows no name.
            say(kind::service_information_added, b, "A has programmes of it, and no service information");
        }
        const local_days days(a, b);
        const paired_programmes found = pair_programmes(a, b, days, settings_.tolerance);
        for (const auto& [day, count] : found.days_a)
            say(kind::day_missing, a, "not in B" + count_of_programmes(count), day);
        for (const auto& [day, count] : found.days_b)
            say(kind::day_added, a, "only in B" + count_of_programmes(count), day);
        for (const programme* const each : found.only_a)
            alone(kind::programme_missing, a, *each, days, " is not in B");
        for (const programme* const each : found.only_b)
            alone(kind::programme_added, a, *each, days, " is only in B");
        for (const auto& [of_a, of_b] : found.pairs)
            compare(a, *of_a, *of_b, days);
    }

    void alone(kind what, const service& of, const programme& which, const local_days& days,
               const char* where) {
        const long day = days.of(which.start);
        const bool missing = what == kind::programme_missing;
        say(what, of, clock_text(which.start, day) + " " + quoted(which) + where, day,
            missing ? &which : nullptr, missing ? nullptr : &which);
    }

    void compare(const service& of, const programme& a, const programme& b, const local_days& days) {
        const long day = days.of(a.start);
        const auto subject = [&] { return clock_text(a.start, day) + " " + quoted(a); };
        const std::int64_t later = b.start - a.start;
        if (std::abs(later) > settings_.tolerance)
            say(kind::programme_moved, of,
                subject() + " begins at " + clock_text(b.start, day) + ", " + span_text(std::abs(later)) +
                    (later > 0 ? " later" : " earlier"),
                day, &a, &b);
        const std::string names = name_difference(a.names, b.names);
        if (!names.empty()) say(kind::programme_renamed, of, subject() + ": " + names, day, &a, &b);
        const std::int64_t longer = std::int64_t{b.duration} - a.duration;
        if (std::abs(longer) > settings_.tolerance)
            say(kind::programme_duration, of,
                subject() + " is " + duration_words(b.duration) + " instead of " + duration_words(a.duration),
                day, &a, &b);
        described_part(of, a, b, day, &a, &b, [&] { return subject() + ": "; });
    }

    template <class Subject>
    void described_part(const service& of, const guide::described& a, const guide::described& b,
                        std::optional<long> day, const programme* of_a, const programme* of_b,
                        const Subject& subject) {
        const auto add = [&](kind what, std::string text) {
            if (!text.empty()) say(what, of, subject() + std::move(text), day, of_a, of_b);
        };
        add(kind::description, description_difference(a.descriptions, b.descriptions));
        add(kind::genre, genre_difference(a, b));
        for (said_difference& each : picture_differences(a, b, pictures_))
            add(each.kind, std::move(each.text));
    }

    const programme_guide& a_;
    const programme_guide& b_;
    const compare_settings& settings_;
    picture_rules pictures_;
    comparison made_;
};

}  // namespace

comparison compare_guides(const programme_guide& a, const programme_guide& b,
                          const compare_settings& settings) {
    return guide_comparison(a, b, settings).finish();
}

}  // namespace dabspi::compare

#include "tools/check/rules.h"

#include <algorithm>
#include <utility>

namespace dabspi::check {

bool finding_list::add(finding what, const std::string& same) {
    const auto [at, is_new] = known_.emplace(std::make_tuple(what.code, what.object, same), all_.size());
    if (is_new) all_.push_back(std::move(what));
    return is_new;
}

void finding_list::add_of_object(finding what, const std::string& same) {
    if (!known_.emplace(std::make_tuple(what.code, what.object, same), kNone).second) return;
    const auto [at, is_new] = of_object_.emplace(std::make_pair(what.code, what.object), all_.size());
    if (is_new) {
        all_.push_back(std::move(what));
    } else {
        ++all_[at->second].more;
    }
}

std::vector<finding> finding_list::take_sorted() {
    std::stable_sort(all_.begin(), all_.end(), [](const finding& a, const finding& b) {
        const severity sa = entry_of(a.code).how_bad;
        const severity sb = entry_of(b.code).how_bad;
        if (sa != sb) return sa > sb;
        return std::tie(a.code, a.line, a.object, a.byte) < std::tie(b.code, b.line, b.object, b.byte);
    });
    return std::move(all_);
}

std::vector<finding> find_all(const recording& played, const history& in, const replay_result& replayed,
                              const std::vector<service_schedule>& schedules, const received_carousels* air,
                              std::optional<long> ends_within) {
    finding_list found;
    look_at_objects(in, found);
    look_at_programmes(in, found);
    look_at_schedules(in, schedules, found);
    if (ends_within) look_at_dates(in, *ends_within, found);
    look_at_listening(played, replayed, found);
    look_at_announcements(in, found);
    look_at_images(in, found);
    if (air != nullptr) look_at_carousels(*air, in, found);
    return found.take_sorted();
}

}  // namespace dabspi::check

#include "tools/check/html_anchors.h"

#include "tools/check/html_text.h"

namespace dabspi::check::html {

std::string id(char kind, std::size_t index) {
    return kind + std::to_string(index);
}

anchors::anchors(const check_report& of) {
    for (std::size_t i = 0; i < of.schedules.size(); ++i) {
        const service_schedule& schedule = of.schedules[i];
        services_[schedule.service] = i;
        for (const std::size_t index : schedule.programmes) {
            const programme_arrival& programme = of.past.programmes[index];
            starts_.emplace(std::make_pair(schedule.service, programme.start), index);
            ends_.emplace(std::make_pair(schedule.service, programme.end()), index);
        }
    }
    has_logos_.resize(of.past.objects.size());
    for (const image_arrival& each : of.past.images)
        if (!each.uses.empty()) has_logos_[each.object] = true;
    for (std::size_t i = 0; i < of.findings.size(); ++i) {
        anchor_of_.push_back(anchor(of.findings[i]));
        if (!anchor_of_.back().empty()) at_[anchor_of_.back()].push_back(i);
    }
}

std::string anchors::anchor(const finding& what) const {
    if (what.service && what.minute) {
        const auto& minutes = what.code == finding_code::gap ? ends_ : starts_;
        const auto programme = minutes.find({*what.service, *what.minute});
        const bool of_programme =
            what.code != finding_code::no_tomorrow && what.code != finding_code::uncovered &&
            what.code != finding_code::nothing_on && what.code != finding_code::other_day;
        if (of_programme && programme != minutes.end())
            return id(what.code == finding_code::gap ? 'g' : 'p', programme->second);
        const auto service = services_.find(*what.service);
        if (service != services_.end()) return id('s', service->second);
    }
    if (what.object == kNone) return {};
    return id(has_logos_[what.object] ? 'l' : 'o', what.object);
}

const std::vector<std::size_t>& anchors::findings_at(const std::string& anchor) const {
    static const std::vector<std::size_t> none;
    const auto found = at_.find(anchor);
    return found == at_.end() ? none : found->second;
}

std::string anchors::links_at(const check_report& of, const std::string& anchor) const {
    // One for each kind: an object may have hundreds of findings.
    const std::vector<std::size_t>& all = findings_at(anchor);
    std::string text;
    for (std::size_t i = 0; i < all.size();) {
        std::size_t next = i;
        while (next < all.size() && of.findings[all[next]].code == of.findings[all[i]].code)
            ++next;
        const catalogue_entry& entry = entry_of(of.findings[all[i]].code);
        text += (text.empty() ? "" : " ") + std::string("<a class=\"chip ") + severity_name(entry.how_bad) +
                "\" href=\"#" + id('f', all[i]) + "\">" + entry.name +
                (next - i > 1 ? " \u00D7\u00A0" + std::to_string(next - i) : "") + "</a>";
        i = next;
    }
    return text;
}

}  // namespace dabspi::check::html

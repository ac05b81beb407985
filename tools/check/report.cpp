#include "tools/check/report.h"

#include <algorithm>
#include <map>
#include <utility>

#include "tools/check/local_day.h"
#include "tools/check/receiver_model.h"
#include "tools/check/rules.h"
#include "tools/text/utf8.h"

namespace dabspi::check {

check_report check_input(checked_input input, const check_settings& settings, const std::string& storage_path,
                         const std::function<bool(std::size_t)>& go_on, const std::function<void()>& played) {
    check_report report;
    report.input = std::move(input);
    report.replayed = replay_recording(report.input.calls, storage_path, go_on);
    if (played) played();
    if (report.replayed.end != play_end::finished) return report;
    report.past = make_history(report.input.calls, report.replayed);
    report.past.cannot_tell = report.input.cannot_tell;
    report.past.places = report.input.places;
    report.disagreements = disagreements(report.past, report.replayed);
    report.schedules = schedules_of(report.past);
    const bool true_clock = report.input.clock == clock_source::true_clock;
    for (finding& each :
         find_all(report.input.calls, report.past, report.replayed, report.schedules, report.input.air.get(),
                  true_clock ? std::optional(settings.ends_within) : std::nullopt)) {
        if (entry_of(each.code).how_bad >= settings.from) {
            report.findings.push_back(std::move(each));
        } else {
            ++report.left_out;
        }
    }
    return report;
}

std::vector<day_summary> days_of(const history& in, const service_schedule& schedule) {
    std::map<long, day_summary> days;
    long covered_to = 0;
    for (const std::size_t index : schedule.programmes) {
        const programme_arrival& each = in.programmes[index];
        const long day = each.start / kDayMinutes;
        const auto [at, is_new] = days.emplace(day, day_summary{day, 0, each.start, each.end(), 0});
        day_summary& of = at->second;
        ++of.programmes;
        of.last = std::max(of.last, each.end());
        // Minutes after midnight count for the next day, if there is one.
        for (long from = std::max(each.start, covered_to); from < each.end();) {
            const long to = std::min(each.end(), (from / kDayMinutes + 1) * kDayMinutes);
            const auto minutes_of = from / kDayMinutes == day ? at : days.find(from / kDayMinutes);
            if (minutes_of != days.end()) {
                minutes_of->second.covered += to - from;
            } else if (from / kDayMinutes == day + 1) {
                days.emplace(day + 1, day_summary{day + 1, 0, from, to, to - from});
            }
            from = to;
        }
        covered_to = std::max(covered_to, each.end());
    }
    std::vector<day_summary> all;
    for (const auto& [day, summary] : days)
        if (summary.programmes != 0) all.push_back(summary);
    return all;
}

namespace {

// The last one that was listened to.
std::optional<dab_identifier> last_ensemble(const checked_input& in) {
    std::optional<dab_identifier> last;
    for (const call& each : in.calls.calls) {
        const auto* const tuned = std::get_if<set_current_service>(&each.what);
        if (tuned == nullptr || tuned->ensemble == 0) continue;
        last.emplace();
        last->ensemble = tuned->ensemble;
        if (tuned->service.ecc != 0) last->ecc = tuned->service.ecc;
        if (in.ecc) last->ecc = in.ecc;
    }
    return last;
}

// The name that service information gives the ensemble.
std::string label_of(const history& in, std::uint16_t eid) {
    std::string label;
    for (const sent_object& each : in.objects) {
        for (const spi_object::node& top : each.tree.tops) {
            for (const spi_object::node& ensemble : top.children) {
                if (ensemble.tag != spi_object::tag::ensemble) continue;
                const spi_object::node* const id = ensemble.attribute_at(0x80);
                const auto* const value =
                    id == nullptr ? nullptr : std::get_if<spi_object::ensemble_id>(&id->decoded);
                if (value == nullptr || value->eid != eid) continue;
                for (const std::uint8_t tag :
                     {spi_object::tag::long_name, spi_object::tag::short_name, spi_object::tag::medium_name})
                    if (const spi_object::node* const name = ensemble.child(tag))
                        if (const spi_object::node* const text = name->child(spi_object::tag::text))
                            if (const auto* const content =
                                    std::get_if<spi_object::text_value>(&text->decoded))
                                label = content->text;
            }
        }
    }
    return label;
}

}  // namespace

std::string ensemble_text(const check_report& of) {
    const auto id = last_ensemble(of.input);
    if (!id) return "no ensemble";
    const std::string label = label_of(of.past, *id->ensemble);
    return id->ensemble_text() + (label.empty() ? "" : " " + printable(label));
}

std::string subject_text(const check_report& of) {
    return ensemble_text(of) + ", " +
           (of.past.clock.empty() ? "no date" : day_text(of.past.clock.back().minute / kDayMinutes));
}

std::array<std::size_t, 3> count_by_severity(const std::vector<finding>& findings) {
    std::array<std::size_t, 3> counts{};
    for (const finding& each : findings)
        ++counts.at(static_cast<std::size_t>(entry_of(each.code).how_bad));
    return counts;
}

std::string number_of(std::size_t count, const std::string& thing) {
    std::string digits = std::to_string(count);
    for (std::size_t at = digits.size(); at > 3; at -= 3)
        digits.insert(at - 3, ",");
    return digits + " " + thing + (count == 1 ? "" : "s");
}

std::string count_text(const std::vector<finding>& findings) {
    const auto counts = count_by_severity(findings);
    std::string text;
    for (const severity each : {severity::error, severity::warning, severity::note}) {
        const std::size_t count = counts.at(static_cast<std::size_t>(each));
        if (count != 0) text += (text.empty() ? "" : ", ") + number_of(count, severity_name(each));
    }
    return text.empty() ? "nothing found" : text;
}

std::string span_text(const check_report& of) {
    std::string text = of.input.folder ? number_of(of.past.objects.size(), "object")
                                       : number_of(of.input.calls.calls.size(), "call");
    if (of.past.clock.empty()) return text + ", no date";
    const auto [first, last] =
        std::minmax_element(of.past.clock.begin(), of.past.clock.end(),
                            [](const clock_period& a, const clock_period& b) { return a.minute < b.minute; });
    text += ", " + minute_text(first->minute);
    if (last->minute != first->minute) text += " to " + minute_text(last->minute);
    return text;
}

std::string location_text(const check_report& of, const finding& what) {
    std::string text;
    const auto add = [&text](const std::string& part) { text += (text.empty() ? "" : ", ") + part; };
    if (what.line != 0 && !of.input.folder) add(place_words(of.input.places, what.line));
    if (what.object != kNone) {
        const std::string& name = of.past.objects[what.object].content_name;
        add(name.empty() ? "an object without a name" : printable(name));
    }
    if (what.byte) add("byte " + std::to_string(*what.byte));
    return text;
}

}  // namespace dabspi::check

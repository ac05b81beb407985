// The schedule of each service: a track a day, on which every programme stands where its times say, and the
// same as a table.

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>
#include <set>

#include "tools/check/html_parts.h"
#include "tools/check/html_text.h"
#include "tools/check/local_day.h"
#include "tools/check/overlap_rows.h"

namespace dabspi::check::html {

namespace {

constexpr std::size_t kOpenServices = 12;
constexpr long kLongestProgramme = 65535 / 60;  // minutes: a duration has 16 bits of seconds

std::string percent(long minutes) {
    char text[32];
    std::snprintf(text, sizeof text, "%.4f%%", 100.0 * static_cast<double>(minutes) / kDayMinutes);
    return text;
}

std::string day_heading(long day) {
    static constexpr std::array<const char*, 7> names = {"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"};
    // 1858-11-17, day 0, was a Wednesday.
    return std::string(names.at(static_cast<std::size_t>((day + 2) % 7))) + " <span>" + day_text(day) +
           "</span>";
}

// Ends are said as 24:00 where they are.
std::string end_text(long start, long end) {
    return end % kDayMinutes == 0 && end > start ? "24:00" : clock_text(end);
}

class schedule_writer {
 public:
    schedule_writer(const check_report& of, const anchors& where, std::size_t service)
        : of_(of), where_(where), schedule_(of.schedules[service]), service_(service), now_(last_minute(of)) {
        for (const schedule_boundary& each : boundaries_of(of.past, schedule_)) {
            const long end = of.past.programmes[each.first].end();
            const long start = of.past.programmes[each.second].start;
            if (end >= start || !gaps_.emplace(each.first, start - end).second) continue;
            gaps_of_days_.emplace(end / kDayMinutes, each.first);
        }
        for (const replayed_notification& each : of.replayed.all) {
            const auto* pair = std::get_if<now_next>(&each.what);
            if (pair != nullptr && each.at.service && id_of(*each.at.service) == schedule_.service)
                reported_.insert(minute_of(pair->now.start));
        }
    }

    std::string write() const {
        std::string text = "<article id=\"" + id('s', service_) + "\">\n<h3>" +
                           service_markup(of_, schedule_.service) + "</h3>\n";
        const std::string links = where_.links_at(of_, id('s', service_));
        if (!links.empty()) text += "<p class=\"chips\">" + links + "</p>\n";
        if (schedule_.programmes.empty()) return text + "<p>No programmes were stored.</p>\n</article>\n";
        text += "<div class=\"scroll\" tabindex=\"0\" role=\"group\" aria-label=\"Days of " +
                escaped(service_text(schedule_.service)) + "\">\n" + hours();
        for (const long day : days())
            text += track(day);
        return text + "</div>\n" + table() + "</article>\n";
    }

 private:
    const programme_arrival& at(std::size_t i) const { return of_.past.programmes[schedule_.programmes[i]]; }

    std::set<long> days() const {
        std::set<long> all;
        for (std::size_t i = 0; i < schedule_.programmes.size(); ++i)
            all.insert(at(i).start / kDayMinutes);
        for (const auto& [index, length] : gaps_)
            all.insert(of_.past.programmes[index].end() / kDayMinutes);
        return all;
    }

    static std::string hours() {
        std::string text = "<div class=\"row hours\" aria-hidden=\"true\"><span></span><div class=\"scale\">";
        for (int hour = 0; hour < 24; hour += 2)
            text += "<span style=\"left:" + percent(hour * 60) + "\">" + clock_text(hour * 60) + "</span>";
        return text + "</div></div>\n";
    }

    // A programme's part of a day: `from` and `to` in minutes of the day.
    std::string cell(std::size_t i, long day, const row_position& row) const {
        const programme_arrival& programme = at(i);
        const long midnight = day * kDayMinutes;
        const long from = std::max(programme.start - midnight, 0L);
        const long to = std::min(programme.end() - midnight, kDayMinutes);
        const bool continued = programme.start < midnight;
        const bool now = now_ && programme.start <= *now_ && *now_ < programme.end();
        const std::string anchor = id('p', schedule_.programmes[i]);
        std::string classes = "cell";
        if (continued) classes += " continued";
        if (now) classes += " now";
        if (reported_.count(programme.start) != 0) classes += " reported";
        for (const severity how_bad : {severity::error, severity::warning, severity::note})
            if (has(anchor, how_bad)) {
                classes += std::string(" ") + severity_name(how_bad);
                break;
            }
        std::string text = "<li class=\"" + classes + "\"" + (continued ? "" : " id=\"" + anchor + "\"") +
                           (now ? " aria-current=\"time\"" : "") + " data-start=\"" + std::to_string(from) +
                           "\" data-minutes=\"" + std::to_string(to - from) +
                           "\" style=\"left:" + percent(from) + ";width:" + percent(to - from) +
                           height_of(row) + "\" title=\"" + clock_text(programme.start) + " to " +
                           end_text(programme.start, programme.end()) + " " + escaped(programme.name) + "\">";
        const std::string title = programme.name.empty() ? "<i>no title</i>" : from_broadcast(programme.name);
        const std::string links = continued ? "" : first_link(anchor);
        text += "<span class=\"time\">" + clock_text(programme.start) + "<span class=\"unseen\"> to " +
                end_text(programme.start, programme.end()) + "</span></span> " +
                (links.empty() ? "<span class=\"title\">" + title + "</span>" : links + title + "</a>");
        return text + "</li>\n";
    }

    // The whole height when nothing overlaps.
    static std::string height_of(const row_position& row) {
        if (row.of == 1) return {};
        const double height = 100.0 / static_cast<double>(row.of);
        char text[64];
        std::snprintf(text, sizeof text, ";top:%.4f%%;height:%.4f%%", height * static_cast<double>(row.row),
                      height);
        return text;
    }

    bool has(const std::string& anchor, severity how_bad) const {
        const auto& all = where_.findings_at(anchor);
        return std::any_of(all.begin(), all.end(), [&](std::size_t each) {
            return entry_of(of_.findings[each].code).how_bad == how_bad;
        });
    }

    // An opening tag; the table has them all.
    std::string first_link(const std::string& anchor) const {
        const auto& all = where_.findings_at(anchor);
        if (all.empty()) return {};
        return "<a class=\"title\" href=\"#" + id('f', all.front()) + "\">";
    }

    // Behind a programme of the history. It stands once, on the day on which it begins.
    std::string gap(std::size_t index, long length, long day) const {
        const std::string anchor = id('g', index);
        const auto& all = where_.findings_at(anchor);
        const long from = of_.past.programmes[index].end() - day * kDayMinutes;
        if (all.empty() || from < 0 || from >= kDayMinutes) return {};
        const long shown = std::min(length, kDayMinutes - from);
        return "<li class=\"gap\" id=\"" + anchor + "\" data-start=\"" + std::to_string(from) +
               "\" data-minutes=\"" + std::to_string(shown) + "\" style=\"left:" + percent(from) +
               ";width:" + percent(shown) + "\"><a href=\"#" + id('f', all.front()) +
               "\"><span class=\"label\">gap, " + minutes_text(length) + "</span></a></li>\n";
    }

    // Nothing for no time.
    static std::string free_time(long midnight, long from, long to) {
        if (to <= from) return {};
        return "<li class=\"free\" data-start=\"" + std::to_string(from - midnight) + "\" data-minutes=\"" +
               std::to_string(to - from) + "\" style=\"left:" + percent(from - midnight) +
               ";width:" + percent(to - from) + "\"><span class=\"unseen\">no programme from " +
               clock_text(from) + " to " + end_text(from, to) + "</span></li>\n";
    }

    // Programmes with a part in this day, by their place in the schedule.
    std::vector<std::size_t> programmes_of(long day) const {
        const long midnight = day * kDayMinutes;
        std::vector<std::size_t> all;
        // They stand by their start, and none is longer than its duration can be coded.
        const auto first = std::partition_point(
            schedule_.programmes.begin(), schedule_.programmes.end(), [&](std::size_t index) {
                return of_.past.programmes[index].start < midnight - kLongestProgramme;
            });
        for (auto i = static_cast<std::size_t>(first - schedule_.programmes.begin());
             i < schedule_.programmes.size() && at(i).start < midnight + kDayMinutes; ++i)
            if (at(i).start >= midnight || at(i).end() > midnight) all.push_back(i);
        return all;
    }

    std::string track(long day) const {
        const long midnight = day * kDayMinutes;
        const std::vector<std::size_t> programmes = programmes_of(day);
        std::vector<time_span> spans;
        for (const std::size_t i : programmes)
            spans.push_back({std::max(at(i).start, midnight), at(i).end()});
        const std::vector<row_position> rows = rows_of(spans);
        std::multimap<long, std::string> parts;  // in the order of time, which is the keyboard's
        std::size_t most = 1;
        long covered_to = midnight;
        for (std::size_t n = 0; n < programmes.size(); ++n) {
            most = std::max(most, rows[n].of);
            parts.emplace(covered_to, free_time(midnight, covered_to, spans[n].from));
            parts.emplace(spans[n].from, cell(programmes[n], day, rows[n]));
            covered_to = std::max(covered_to, spans[n].to);
        }
        parts.emplace(covered_to, free_time(midnight, covered_to, midnight + kDayMinutes));
        const auto [first_gap, last_gap] = gaps_of_days_.equal_range(day);
        for (auto each = first_gap; each != last_gap; ++each)
            parts.emplace(of_.past.programmes[each->second].end(),
                          gap(each->second, gaps_.at(each->second), day));
        std::string cells;
        for (const auto& [minute, markup] : parts)
            cells += markup;
        std::string line;
        if (now_ && *now_ / kDayMinutes == day)
            line = "<li class=\"clock\" data-start=\"" + std::to_string(*now_ - midnight) +
                   "\" style=\"left:" + percent(*now_ - midnight) + "\"><span class=\"unseen\">" +
                   clock_text(*now_) + " by the receiver's clock</span></li>\n";
        return "<div class=\"row\"><h4>" + day_heading(day) +
               "</h4>\n<ol class=\"track\" style=\"--rows:" + std::to_string(most) + "\">\n" + cells + line +
               "</ol></div>\n";
    }

    std::string place_of(std::size_t line) const {
        if (of_.input.folder) return {};
        return of_.input.places.empty() ? std::to_string(line) : place_words(of_.input.places, line);
    }

    std::string table() const {
        std::string text =
            "<details><summary>As a table, " + number_of(schedule_.programmes.size(), "programme") +
            "</summary>\n<div class=\"scroll\" tabindex=\"0\" role=\"group\" "
            "aria-label=\"Table of programmes\"><table>\n<thead><tr><th>Start<th>End<th>Title"
            "<th>" +
            std::string(of_.input.places.empty() ? "Line" : "Frame") + "<th>Findings</tr></thead>\n<tbody>\n";
        for (std::size_t i = 0; i < schedule_.programmes.size(); ++i) {
            const programme_arrival& programme = at(i);
            const std::string anchor = id('p', schedule_.programmes[i]);
            text += "<tr><td>" + minute_text(programme.start) + "<td>" +
                    end_text(programme.start, programme.end()) + "<td>" + from_broadcast(programme.name) +
                    "<td>" + place_of(programme.line) + "<td>" + where_.links_at(of_, anchor) + " " +
                    where_.links_at(of_, id('g', schedule_.programmes[i])) + "</tr>\n";
        }
        return text + "</tbody>\n</table></div></details>\n";
    }

    const check_report& of_;
    const anchors& where_;
    const service_schedule& schedule_;
    std::size_t service_;
    std::optional<long> now_;
    std::multimap<long, std::size_t> gaps_of_days_;  // the programmes before them
    std::map<std::size_t, long> gaps_;               // behind programmes of the history: how many minutes
    std::set<long> reported_;                        // starts of programmes that were reported as now
};

}  // namespace

std::string schedules_section(const check_report& of, const anchors& where) {
    std::string text = "<section id=\"schedules\">\n<h2>Schedules</h2>\n";
    if (of.schedules.empty())
        return text + "<p>No service was listened to, and none has programmes.</p>\n</section>\n";
    text += "<p class=\"legend\"><span class=\"key reported\">reported as now</span> ";
    if (const auto now = last_minute(of))
        text += "<span class=\"key now\">on at " + minute_text(*now) + ", the end of the clock</span> ";
    text +=
        "<span class=\"key hatched\">no programme</span> <span class=\"key warning\">has "
        "findings</span></p>\n";
    for (std::size_t i = 0; i < of.schedules.size(); ++i) {
        const std::string article = schedule_writer(of, where, i).write();
        // A browser lays out what is open: of many services the first ones.
        text += i < kOpenServices
                    ? article
                    : "<details class=\"more\">\n<summary>" + service_markup(of, of.schedules[i].service) +
                          " <small>" + number_of(of.schedules[i].programmes.size(), "programme") +
                          "</small></summary>\n" + article + "</details>\n";
    }
    return text + "</section>\n";
}

}  // namespace dabspi::check::html

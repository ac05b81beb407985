// The tables of what the carousel holds.

#include "tools/check/html_parts.h"
#include "tools/check/html_text.h"
#include "tools/check/local_day.h"
#include "tools/check/logo_text.h"
#include "tools/check/overview.h"

namespace dabspi::check::html {

namespace {

constexpr std::size_t kFewRows = 40;  // so many are open at once

// 24:00 for the end of the day itself.
std::string last_text(const day_summary& of) {
    const long midnight = (of.day + 1) * kDayMinutes;
    if (of.last == midnight) return "24:00";
    return clock_text(of.last) + (of.last > midnight ? " of the next day" : "");
}

std::string scrolling(const std::string& label, const std::string& table) {
    return "<div class=\"scroll\" tabindex=\"0\" role=\"group\" aria-label=\"" + escaped(label) +
           "\"><table class=\"matrix\">\n" + table + "</tbody>\n</table></div>\n";
}

std::string folded(const std::string& summary, const std::string& content, bool open) {
    return std::string("<details class=\"part\"") + (open ? " open" : "") + ">\n<summary>" + summary +
           "</summary>\n" + content + "</details>\n";
}

std::string row_head(const check_report& of, const service_overview& service) {
    return "<tr><th scope=\"row\">" + service_markup(of, service.service);
}

std::string logo_row(const check_report& of, const service_overview& service,
                     const std::vector<std::size_t>& sizes) {
    std::string row = row_head(of, service);
    for (const std::size_t size : sizes) {
        const logo_cell& cell = service.logos.at(size);
        const char* const kind = cell.announced == 0 ? ""
                                 : cell.written      ? "written"
                                 : cell.sent != 0    ? "sent"
                                                     : "missing";
        row += std::string("<td class=\"") + kind + "\">" + escaped(cell_text(cell));
    }
    return row + "</tr>\n";
}

std::string logos(const check_report& of, const overview& all) {
    const std::vector<std::size_t> sizes = all.logo_sizes();
    if (sizes.empty()) return {};
    std::string rows;
    std::size_t count = 0;
    for (const service_overview& service : all.services) {
        if (!service.has_logo()) continue;
        ++count;
        rows += logo_row(of, service, sizes);
    }
    std::string head = "<thead><tr><th scope=\"col\">Service";
    for (const std::size_t size : sizes)
        head += std::string("<th scope=\"col\">") + size_text(static_cast<std::uint8_t>(size));
    return folded("Logos of " + number_of(count, "service") + ", by size",
                  scrolling("Table of logos", head + "</tr></thead>\n<tbody>\n" + rows), count <= kFewRows);
}

std::string days(const check_report& of, const overview& all) {
    std::string rows;
    std::size_t count = 0;
    for (const service_overview& service : all.services) {
        count += service.days.empty() ? 0 : 1;
        for (const sent_day& day : service.days)
            rows += row_head(of, service) + "<td class=\"number\">" + day_text(day.sum.day) +
                    (day.kept ? "" : " <small>not kept</small>") + "<td class=\"number\">" +
                    clock_text(day.sum.first) + " to " + last_text(day.sum) + "<td class=\"number\">" +
                    std::to_string(day.sum.programmes) + "<td class=\"number\">" + std::to_string(day.gaps) +
                    "<td class=\"number\">" + std::to_string(day.described) + "<td class=\"number\">" +
                    std::to_string(day.with_genre) + "</tr>\n";
    }
    if (rows.empty()) return {};
    return folded(
        "Schedules of " + number_of(count, "service") + ", by day",
        scrolling("Table of days",
                  "<thead><tr><th scope=\"col\">Service<th scope=\"col\">Day<th scope=\"col\">From, to<th "
                  "scope=\"col\">Programmes<th scope=\"col\">Gaps<th scope=\"col\">Described<th "
                  "scope=\"col\">With genre</tr></thead>\n<tbody>\n" +
                      rows),
        count <= kFewRows);
}

std::string list(const check_report& of, const overview& all, const std::vector<std::size_t>& which,
                 const char* title) {
    if (which.empty()) return {};
    std::string text = "<ul class=\"names\">\n";
    for (const std::size_t each : which)
        text += "<li>" + service_markup(of, all.services[each].service) + "</li>\n";
    return folded(std::string(title) + ": " + std::to_string(which.size()), text + "</ul>\n",
                  which.size() <= kFewRows);
}

}  // namespace

std::string overview_section(const check_report& of) {
    const overview all = overview_of(of);
    const std::string text =
        logos(of, all) + days(of, all) +
        list(of, all, all.without_schedule(), "Services without a schedule") +
        list(of, all, all.without_logo(), "Services without a logo") +
        list(of, all, all.not_announced(), "Schedules of services that no service information names");
    return "<section id=\"overview\">\n<h2>Overview</h2>\n" +
           (text.empty() ? "<p>Neither services nor programmes were received.</p>\n" : text) + "</section>\n";
}

}  // namespace dabspi::check::html

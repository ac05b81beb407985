#include "tools/check/all_reports.h"

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>

#include "tools/check/html_page.h"
#include "tools/check/html_parts.h"
#include "tools/check/html_report.h"
#include "tools/check/html_text.h"
#include "tools/check/json_report.h"
#include "tools/text/utf8.h"

namespace dabspi::check {

namespace {

std::size_t programmes_of(const check_report& of) {
    std::size_t count = 0;
    for (const service_schedule& each : of.schedules)
        count += each.programmes.size();
    return count;
}

std::string what_it_holds(const check_report& of) {
    std::set<spi::ServElemId> services;
    for (const announced_service& each : of.past.services)
        services.insert(each.service);
    for (const service_schedule& each : of.schedules)
        services.insert(each.service);
    return number_of(of.past.objects.size(), "object") + ", " + number_of(services.size(), "service") + ", " +
           number_of(programmes_of(of), "programme");
}

// "E1.C185", as a part of a file's name.
std::string file_part(const check_report& of) {
    const std::string text = ensemble_text(of);
    return text.substr(0, text.find(' '));
}

std::string index_page(const std::string& name, const std::vector<check_report>& reports,
                       const std::vector<page>& pages) {
    std::string rows;
    for (std::size_t i = 0; i < reports.size(); ++i) {
        const check_report& each = reports[i];
        const std::string file = std::filesystem::path(pages[i].path).filename().string();
        rows += "<tr><td><a href=\"" + html::escaped("./" + file) + "\">" +
                html::escaped(ensemble_text(each)) + "</a><td>" +
                html::escaped(subject_text(each).substr(ensemble_text(each).size() + 2)) + "<td>" +
                html::escaped(what_it_holds(each)) + "<td>" + html::escaped(count_text(each.findings)) +
                "<td>" + html::escaped(each.input.calls.name) + "</tr>\n";
    }
    return html::page_around(std::to_string(reports.size()) + " ensembles: dabspi check", html::kStyle,
                             "<header>\n<h1>" + std::to_string(reports.size()) + " ensembles</h1>\n<p>" +
                                 html::escaped(name) +
                                 "</p>\n</header>\n<main>\n<div class=\"scroll\" tabindex=\"0\" "
                                 "role=\"group\" aria-label=\"Table of "
                                 "ensembles\"><table>\n<thead><tr><th>Ensemble<th>Date<th>Holds<th>Findings<"
                                 "th>Folder</tr></thead>\n<tbody>\n" +
                                 rows + "</tbody>\n</table></div>\n</main>\n");
}

}  // namespace

std::string text_of_all(const std::string& name, const std::vector<check_report>& reports,
                        const text_settings& how) {
    if (reports.size() == 1) return text_report(reports.front(), how);
    std::string text = how.colours(text_colour::heading, printable(name)) + ": " +
                       number_of(reports.size(), "ensemble") + "\n";
    for (const check_report& each : reports)
        text += "  " + subject_text(each) + ": " + what_it_holds(each) + "; " + count_text(each.findings) +
                "; " + printable(each.input.calls.name) + "\n";
    for (const check_report& each : reports)
        text += "\n\n" + text_report(each, how);
    return text;
}

std::string json_of_all(const std::string& name, const std::vector<check_report>& reports) {
    if (reports.size() == 1) return json_report(reports.front());
    using nlohmann::ordered_json;
    std::array<std::size_t, 3> counts{};
    std::size_t left_out = 0;
    for (const check_report& each : reports) {
        const auto of_this = count_by_severity(each.findings);
        for (std::size_t i = 0; i < counts.size(); ++i)
            counts.at(i) += of_this.at(i);
        left_out += each.left_out;
    }
    ordered_json json;
    json["input"] = name;
    json["errors"] = counts[2];
    json["warnings"] = counts[1];
    json["notes"] = counts[0];
    json["left_out"] = left_out;
    std::string text = printable_json(json.dump(-1, ' ', false, ordered_json::error_handler_t::replace));
    // Each as it stands alone.
    text.back() = ',';
    text += "\"ensembles\":[";
    for (const check_report& each : reports) {
        std::string one = json_report(each);
        one.pop_back();
        text += (&each == &reports.front() ? "" : ",") + one;
    }
    return text + "]}\n";
}

std::vector<page> pages_of(const std::string& name, const std::vector<check_report>& reports,
                           const std::string& path) {
    if (reports.size() == 1) return {{path, html_report(reports.front())}};
    const std::filesystem::path index(path);
    std::vector<page> pages;
    std::set<std::string> taken;
    for (const check_report& each : reports) {
        std::string stem = index.stem().string() + "-" + file_part(each);
        for (int n = 2; !taken.insert(stem).second; ++n)
            stem = index.stem().string() + "-" + file_part(each) + "-" + std::to_string(n);
        pages.push_back(
            {(index.parent_path() / (stem + index.extension().string())).string(), html_report(each)});
    }
    // Last: when it is there, so is what it leads to.
    pages.push_back({path, index_page(name, reports, pages)});
    return pages;
}

}  // namespace dabspi::check

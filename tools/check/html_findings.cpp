#include <algorithm>

#include "tools/check/html_parts.h"
#include "tools/check/html_text.h"

namespace dabspi::check::html {

namespace {

constexpr std::size_t kFewOccurrences = 12;    // so many are shown at once
constexpr std::size_t kSomeOccurrences = 100;  // and so many more at a time

std::string one_occurrence(const check_report& of, const anchors& where, std::size_t index) {
    const finding& what = of.findings[index];
    const std::string location = escaped(location_text(of, what));
    const std::string& target = where.of_finding(index);
    std::string text = "<li id=\"" + id('f', index) + "\">";
    if (!location.empty()) text += (target.empty() ? location : link_to(target, location)) + "<br>";
    text += "<span dir=\"auto\">" + escaped(what.text) + "</span>";
    if (what.more != 0) text += " <small>and " + std::to_string(what.more) + " more in this object</small>";
    if (location.empty() && !target.empty()) text += " " + link_to(target, "show");
    return text + "</li>\n";
}

std::string places_from(const check_report& of, const anchors& where, std::size_t from, std::size_t to,
                        std::size_t first) {
    std::string text = "<ol start=\"" + std::to_string(from - first + 1) + "\">\n";
    for (std::size_t i = from; i < to; ++i)
        text += one_occurrence(of, where, i);
    return text + "</ol>\n";
}

std::string one_kind(const check_report& of, const anchors& where, std::size_t from, std::size_t to) {
    const catalogue_entry& entry = entry_of(of.findings[from].code);
    const std::string how_bad = severity_name(entry.how_bad);
    std::string text = "<details class=\"kind " + how_bad + "\"" +
                       (entry.how_bad == severity::note && to - from > kFewOccurrences ? "" : " open") +
                       ">\n<summary><span class=\"badge " + how_bad + "\">" + how_bad + "</span> <code>" +
                       entry.name + "</code> " + escaped(entry.title) + " <span class=\"count\">" +
                       number_of(to - from, "place") + "</span></summary>\n<p>" + escaped(entry.why) +
                       "</p>\n<p><strong>Remedy:</strong> " + escaped(entry.remedy) + "</p>\n" +
                       places_from(of, where, from, std::min(to, from + kFewOccurrences), from);
    for (std::size_t i = from + kFewOccurrences; i < to; i += kSomeOccurrences) {
        const std::size_t end = std::min(to, i + kSomeOccurrences);
        text += "<details>\n<summary>" + std::to_string(i - from + 1) + " to " + std::to_string(end - from) +
                "</summary>\n" + places_from(of, where, i, end, from) + "</details>\n";
    }
    return text + "</details>\n";
}

}  // namespace

std::string findings_section(const check_report& of, const anchors& where) {
    std::string text = "<section id=\"findings\">\n<h2>Findings</h2>\n";
    if (of.findings.empty()) text += "<p>Nothing was found.</p>\n";
    for (std::size_t from = 0; from < of.findings.size();) {
        std::size_t to = from;
        while (to < of.findings.size() && of.findings[to].code == of.findings[from].code)
            ++to;
        text += one_kind(of, where, from, to);
        from = to;
    }
    return text + "</section>\n";
}

}  // namespace dabspi::check::html

#include "tools/check/html_report.h"

#include "tools/check/html_page.h"
#include "tools/check/html_parts.h"
#include "tools/check/html_text.h"

namespace dabspi::check {

namespace html {

std::optional<long> last_minute(const check_report& of) {
    if (of.past.clock.empty()) return std::nullopt;
    return of.past.clock.back().minute;
}

std::string service_markup(const check_report& of, const spi::ServElemId& service) {
    const auto name = of.past.names.find(service);
    const std::string identifier = "<code>" + escaped(service_text(service)) + "</code>";
    return name == of.past.names.end() ? identifier : from_broadcast(name->second) + " " + identifier;
}

}  // namespace html

namespace {

struct section_link {
    const char* id;
    const char* title;
};
constexpr section_link kSections[] = {{"overview", "Overview"},       {"findings", "Findings"},
                                      {"schedules", "Schedules"},     {"logos", "Logos"},
                                      {"timeline", "What was shown"}, {"objects", "Objects"}};

// A path may be broken behind its slashes.
std::string path_markup(const std::string& path) {
    std::string text;
    for (const char c : html::escaped(path))
        text += c == '/' ? std::string("/<wbr>") : std::string(1, c);
    return text;
}

std::string header(const check_report& of) {
    std::string text =
        "<header>\n<h1>" + html::escaped(subject_text(of)) + "</h1>\n<p>" + path_markup(of.input.calls.name) +
        ": " + html::escaped(span_text(of)) + "; " + html::escaped(count_text(of.findings)) +
        (of.left_out == 0 ? "" : ", " + std::to_string(of.left_out) + " of lower severity left out") +
        "</p>\n";
    // What is stale shows before anything else.
    for (const finding& each : of.findings)
        if (each.code == finding_code::no_programmes_today && !each.service)
            text += "<p class=\"banner\"><strong>Nothing for today:</strong> " + html::escaped(each.text) +
                    "</p>\n";
    if (!of.input.said.empty()) {
        text += "<ul class=\"said\">\n";
        for (const std::string& each : of.input.said)
            text += "<li>" + html::escaped(each) + "</li>\n";
        text += "</ul>\n";
    }
    text += "<nav aria-label=\"Parts of this page\"><ul>\n";
    for (const section_link& each : kSections)
        text += "<li>" + html::link_to(each.id, each.title) + "</li>\n";
    return text + "</ul></nav>\n</header>\n";
}

}  // namespace

std::string html_report(const check_report& of) {
    const html::anchors where(of);
    return html::page_around(subject_text(of) + ": dabspi check", html::kStyle,
                             "<a class=\"skip\" href=\"#findings\">Skip to the findings</a>\n"
                             "<a class=\"skip\" href=\"#schedules\">Skip to the schedules</a>\n" +
                                 header(of) + "<main>\n" + html::overview_section(of) +
                                 html::findings_section(of, where) + html::schedules_section(of, where) +
                                 html::logos_section(of, where) + html::timeline_section(of) +
                                 html::objects_section(of, where) + "</main>\n");
}

}  // namespace dabspi::check

#include "tools/check/text_report.h"

#include <algorithm>

#include "tools/check/local_day.h"
#include "tools/check/logo_text.h"
#include "tools/check/overview.h"
#include "tools/terminal/wrapped_text.h"
#include "tools/text/utf8.h"

namespace dabspi::check {

namespace {

constexpr std::size_t kSomeOccurrences = 8;
constexpr std::size_t kSomeServices = 30;
constexpr std::size_t kNameWidth = 30;
constexpr std::size_t kCellWidth = 14;

std::string padded(std::string text, std::size_t width) {
    // By characters, not by bytes.
    const auto shown = static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
    if (shown < width) text.append(width - shown, ' ');
    return text;
}

text_colour text_colour_of(severity how_bad) {
    return how_bad == severity::error     ? text_colour::fault
           : how_bad == severity::warning ? text_colour::remark
                                          : text_colour::receiver;
}

// The text's own bytes are not looked at: a name that is cut may be narrower than its column.
std::string cut(const std::string& text, std::size_t characters) {
    std::string_view rest = text;
    for (std::size_t i = 0; i < characters && !rest.empty(); ++i)
        rest.remove_prefix(first_utf8_part(rest).length);
    return text.substr(0, text.size() - rest.size());
}

std::string without_trailing_blanks(std::string text) {
    while (!text.empty() && text.back() == ' ')
        text.pop_back();
    return text;
}

std::string short_cell(const logo_cell& of) {
    if (of.announced == 0) return {};
    if (of.sent == 0) return "not sent";
    return (of.written ? "written " : "sent ") + std::to_string(of.bytes);
}

std::string day_line(const sent_day& day) {
    const day_summary& of = day.sum;
    const long midnight = (of.day + 1) * kDayMinutes;
    std::string programmes = number_of(of.programmes, "programme");
    std::string line = "  " + day_text(of.day) + "  " + clock_text(of.first) + " to " +
                       (of.last == midnight ? "24:00" : clock_text(of.last)) +
                       (of.last > midnight ? " of the next day" : "") + ", " + programmes;
    const long rest = kDayMinutes - of.covered;
    if (rest > 0) line += ", " + minutes_text(rest) + " of the day without";
    if (day.gaps != 0) line += ", " + number_of(day.gaps, "gap");
    if (day.described != 0) line += ", " + std::to_string(day.described) + " described";
    if (day.with_genre != 0) line += ", " + std::to_string(day.with_genre) + " with a genre";
    if (!day.kept) line += "; not kept";
    return line + "\n";
}

std::string services_text(const overview& all, const text_settings& how) {
    std::string text;
    std::size_t shown = 0;
    std::size_t left_out = 0;
    for (const service_overview& each : all.services) {
        // Announced ones without programmes have a list of their own.
        if (each.days.empty() && each.announced && all.any_programmes) continue;
        if (each.days.empty() && each.announced && shown != 0) continue;
        if (!how.all && shown == kSomeServices) {
            ++left_out;
            continue;
        }
        ++shown;
        const std::string service = service_text(each.service);
        const std::string name = printable(each.name);
        text += how.colours(text_colour::heading, name.empty() ? service : padded(service, 10) + name) + "\n";
        if (each.days.empty()) text += "  no programmes\n";
        for (const sent_day& day : each.days)
            text += day_line(day);
    }
    if (left_out != 0)
        text += how.colours(text_colour::faint,
                            "and " + number_of(left_out, "more service") + "; --all shows them") +
                "\n";
    return text;
}

// A column for each size that is announced at all.
std::string logos_text(const overview& all, const text_settings& how) {
    const std::vector<std::size_t> sizes = all.logo_sizes();
    if (sizes.empty()) return {};
    const auto services =
        static_cast<std::size_t>(std::count_if(all.services.begin(), all.services.end(),
                                               [](const service_overview& each) { return each.has_logo(); }));
    std::string text = padded("Logos", kNameWidth);
    for (const std::size_t size : sizes)
        text += "  " + padded(size_text(static_cast<std::uint8_t>(size)), kCellWidth);
    text = how.colours(text_colour::heading, without_trailing_blanks(text)) + "\n";
    std::size_t shown = 0;
    for (const service_overview& each : all.services) {
        if (!each.has_logo()) continue;
        if (!how.all && shown == kSomeServices) break;
        ++shown;
        std::string line = padded(cut(service_text(each), kNameWidth), kNameWidth);
        for (const std::size_t size : sizes)
            line += "  " + padded(short_cell(each.logos.at(size)), kCellWidth);
        text += without_trailing_blanks(line) + "\n";
    }
    if (shown < services)
        text += how.colours(text_colour::faint,
                            "and " + number_of(services - shown, "more service") + "; --all shows them") +
                "\n";
    return text;
}

std::string list_text(const overview& all, const std::vector<std::size_t>& which, const std::string& title,
                      const text_settings& how) {
    if (which.empty()) return {};
    std::string names;
    for (std::size_t i = 0; i < which.size() && (how.all || i < kSomeOccurrences); ++i)
        names += (i == 0 ? "" : ", ") + service_text(all.services[which[i]]);
    if (!how.all && which.size() > kSomeOccurrences)
        names += ", and " + std::to_string(which.size() - kSomeOccurrences) + " more";
    return wrapped_text(title + " (" + std::to_string(which.size()) + "): " + names, "");
}

std::string versions_text(const check_report& of, const overview& all, const text_settings& how) {
    std::string text;
    std::size_t count = 0;
    for (const object_version& each : all.objects) {
        if (each.version.empty() && each.created.empty()) continue;
        if (++count > kSomeServices && !how.all) continue;
        text += "  " +
                padded(cut(printable(of.past.objects[each.object].content_name), kNameWidth), kNameWidth) +
                (each.version.empty() ? "" : "  version " + each.version) +
                (each.created.empty() ? "" : "  created " + each.created) + "\n";
    }
    if (!how.all && count > kSomeServices)
        text += how.colours(text_colour::faint, "  and " + number_of(count - kSomeServices, "more object") +
                                                    "; --all shows them") +
                "\n";
    return text.empty() ? text : how.colours(text_colour::heading, "Versions") + "\n" + text;
}

std::string overview_text(const check_report& of, const text_settings& how) {
    const overview all = overview_of(of);
    std::string text;
    const std::string missing = list_text(all, all.without_schedule(), "Without a schedule", how) +
                                list_text(all, all.without_logo(), "Without a logo", how) +
                                list_text(all, all.not_announced(), "With a schedule and not announced", how);
    for (const std::string& part :
         {services_text(all, how), logos_text(all, how), missing, versions_text(of, all, how)})
        if (!part.empty()) text += "\n" + part;
    return text;
}

std::string one_kind(const check_report& of, std::size_t from, std::size_t to, const text_settings& how) {
    const catalogue_entry& entry = entry_of(of.findings[from].code);
    const std::size_t count = to - from;
    std::string text =
        how.colours(text_colour_of(entry.how_bad),
                    padded(severity_name(entry.how_bad), 7) + "  " + entry.name) +
        (count > 1 ? how.colours(text_colour::faint, "  " + std::to_string(count) + " places") : "") + "\n";
    text += wrapped_text(entry.why, "  ") + wrapped_text(std::string("Remedy: ") + entry.remedy, "  ");
    const std::size_t shown = how.all || count <= kSomeOccurrences + 1 ? count : kSomeOccurrences;
    for (std::size_t i = from; i < from + shown; ++i) {
        const finding& each = of.findings[i];
        const std::string location = location_text(of, each);
        if (!location.empty()) text += "    " + how.colours(text_colour::heading, location) + "\n";
        text += "      " + each.text +
                (each.more == 0 ? ""
                                : how.colours(text_colour::faint, " (and " + std::to_string(each.more) +
                                                                      " more in this object)")) +
                "\n";
    }
    if (shown < count)
        text += how.colours(text_colour::faint,
                            "    and " + std::to_string(count - shown) + " more; --all shows them") +
                "\n";
    return text;
}

}  // namespace

std::string text_report(const check_report& of, const text_settings& how) {
    std::string text =
        how.colours(text_colour::heading, printable(of.input.calls.name)) + ": " + span_text(of) + "\n";
    for (const std::string& each : of.input.said)
        text += "  " + each + "\n";
    text += overview_text(of, how);
    for (std::size_t from = 0; from < of.findings.size();) {
        std::size_t to = from;
        while (to < of.findings.size() && of.findings[to].code == of.findings[from].code)
            ++to;
        text += "\n" + one_kind(of, from, to, how);
        from = to;
    }
    text += "\n" + how.colours(text_colour::heading, count_text(of.findings)) +
            (of.left_out == 0 ? "" : ", " + std::to_string(of.left_out) + " of lower severity left out") +
            "\n";
    if (!of.findings.empty()) text += "\"dabspi explain CODE\" says more of a kind.\n";
    return text;
}

}  // namespace dabspi::check

#include "tools/check/text_report.h"

#include <algorithm>

#include "tools/check/local_day.h"
#include "tools/terminal/wrapped_text.h"
#include "tools/text/utf8.h"

namespace dabspi::check {

namespace {

constexpr std::size_t kSomePlaces = 8;

std::string padded(std::string text, std::size_t width) {
    if (text.size() < width) text.append(width - text.size(), ' ');
    return text;
}

ink ink_of(severity how_bad) {
    return how_bad == severity::error     ? ink::fault
           : how_bad == severity::warning ? ink::remark
                                          : ink::receiver;
}

std::string day_line(const day_summary& of) {
    const long midnight = (of.day + 1) * kDayMinutes;
    std::string programmes = number_of(of.programmes, "programme");
    std::string line = "  " + day_text(of.day) + "  " + clock_text(of.first) + " to " +
                       (of.last == midnight ? "24:00" : clock_text(of.last)) +
                       (of.last > midnight ? " of the next day" : "") + ", " + programmes;
    const long rest = kDayMinutes - of.covered;
    if (rest > 0) line += ", " + minutes_text(rest) + " of the day without";
    return line + "\n";
}

std::string services_text(const check_report& of, const text_settings& how) {
    std::string text;
    for (const service_schedule& each : of.schedules) {
        const std::string service = service_text(each.service);
        const std::string name = printable(each.name);
        text += how.colours(ink::heading, name.empty() ? service : padded(service, 10) + name) + "\n";
        const std::vector<day_summary> days = days_of(of.past, each);
        if (days.empty()) text += "  no programmes\n";
        for (const day_summary& day : days)
            text += day_line(day);
    }
    return text;
}

std::string one_kind(const check_report& of, std::size_t from, std::size_t to, const text_settings& how) {
    const catalogue_entry& entry = entry_of(of.findings[from].code);
    const std::size_t count = to - from;
    std::string text =
        how.colours(ink_of(entry.how_bad), padded(severity_name(entry.how_bad), 7) + "  " + entry.name) +
        (count > 1 ? how.colours(ink::faint, "  " + std::to_string(count) + " places") : "") + "\n";
    text += wrapped_text(entry.why, "  ") + wrapped_text(std::string("Cure: ") + entry.cure, "  ");
    const std::size_t shown = how.all || count <= kSomePlaces + 1 ? count : kSomePlaces;
    for (std::size_t i = from; i < from + shown; ++i) {
        const finding& each = of.findings[i];
        const std::string place = place_text(of, each);
        if (!place.empty()) text += "    " + how.colours(ink::heading, place) + "\n";
        text +=
            "      " + each.text +
            (each.more == 0
                 ? ""
                 : how.colours(ink::faint, " (and " + std::to_string(each.more) + " more in this object)")) +
            "\n";
    }
    if (shown < count)
        text +=
            how.colours(ink::faint, "    and " + std::to_string(count - shown) + " more; --all shows them") +
            "\n";
    return text;
}

}  // namespace

std::string text_report(const check_report& of, const text_settings& how) {
    std::string text =
        how.colours(ink::heading, printable(of.input.calls.name)) + ": " + span_text(of) + "\n";
    for (const std::string& each : of.input.said)
        text += "  " + each + "\n";
    if (!of.schedules.empty()) text += "\n" + services_text(of, how);
    for (std::size_t from = 0; from < of.findings.size();) {
        std::size_t to = from;
        while (to < of.findings.size() && of.findings[to].code == of.findings[from].code)
            ++to;
        text += "\n" + one_kind(of, from, to, how);
        from = to;
    }
    text += "\n" + how.colours(ink::heading, count_text(of.findings)) +
            (of.left_out == 0 ? "" : ", " + std::to_string(of.left_out) + " of lower severity left out") +
            "\n";
    if (!of.findings.empty()) text += "\"dabspi explain CODE\" tells more of a kind.\n";
    return text;
}

}  // namespace dabspi::check

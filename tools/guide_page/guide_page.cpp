#include "tools/guide_page/guide_page.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <map>
#include <set>
#include <string_view>
#include <vector>

#include "tools/check/html_page.h"
#include "tools/check/html_text.h"
#include "tools/export/genre_names.h"
#include "tools/guide_page/page_parts.h"

namespace dabspi {

namespace {

using check::html::escaped;
using check::html::from_broadcast;
using guide::programme;
using guide::service;

constexpr std::int64_t kDaySeconds = 86400;
constexpr unsigned kWantedPixels = 128;  // of a logo's width

// "Tuesday, 2026-03-10"; 1970-01-01 is day 0.
std::string day_words(long day) {
    const std::time_t time = static_cast<std::time_t>(day) * kDaySeconds;
    std::tm parts{};
    ::gmtime_r(&time, &parts);
    static const char* const kDays[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                        "Thursday", "Friday", "Saturday"};
    char text[48];
    return std::string(kDays[parts.tm_wday]) + ", " +
           std::string(text, std::strftime(text, sizeof text, "%Y-%m-%d", &parts));
}

std::string clock_words(std::int64_t local) {
    const auto minutes = static_cast<int>((local % kDaySeconds + kDaySeconds) % kDaySeconds / 60);
    char text[32];
    std::snprintf(text, sizeof text, "%02d:%02d", minutes / 60, minutes % 60);
    return text;
}

std::string counted(std::size_t count, const std::string& what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

// In full, a line for each of its lines; its own direction. A page has many: no element too many.
std::string paragraph(const std::string& text) {
    std::string made = "<p dir=\"auto\">";
    std::size_t from = 0;
    for (std::size_t at = 0; at <= text.size(); ++at) {
        if (at < text.size() && text[at] != '\n' && text[at] != '\r') continue;
        if (from != 0 && at > from) made += "<br>";
        made += escaped(std::string_view(text).substr(from, at - from));
        from = at + 1;
    }
    return made + "</p>";
}

std::string paragraphs(const guide::texts& of) {
    std::string made;
    for (const guide::text& each : of.longest())
        made += paragraph(each.value);
    return made;
}

std::string genres(const guide::described& of) {
    std::set<std::string> names;
    for (const spi_object::genre_value& each : of.genres)
        names.insert(genre_name(each));
    std::string made;
    for (const std::string& each : names)
        made += (made.empty() ? "" : ", ") + escaped(each);
    return made.empty() ? made : "<p><small>" + made + "</small></p>";
}

// Where the length is not known, to the next one.
std::int64_t stop_of(const service& of, std::size_t which) {
    const programme& one = of.programmes[which];
    if (one.duration != 0 || which + 1 == of.programmes.size()) return one.stop();
    return of.programmes[which + 1].start;
}

std::string item(const service& of, std::size_t which) {
    const programme& one = of.programmes[which];
    const std::int64_t stop = stop_of(of, which);
    const std::string name = name_of(one);
    std::string title = "<span>" + clock_words(one.local_start());
    if (stop > one.start) title += "\u2013" + clock_words(one.local_start() + stop - one.start);
    title += "</span> " + (name.empty() ? std::string("<bdi>(no name)</bdi>") : from_broadcast(name));
    const std::string more = paragraphs(one.descriptions) + genres(one);
    return "<li data-s=\"" + std::to_string(one.start) + "\" data-e=\"" + std::to_string(stop) + "\">" +
           (more.empty() ? title : "<details><summary>" + title + "</summary>" + more + "</details>") +
           "</li>\n";
}

// `first` to before `last`, of one local day.
std::string day(const service& of, std::size_t first, std::size_t last, bool open) {
    std::int64_t stop = 0;
    bool in_utc = true;
    std::string items;
    for (std::size_t i = first; i < last; ++i) {
        stop = std::max(stop, stop_of(of, i));
        if (of.programmes[i].offset) in_utc = false;
        items += item(of, i);
    }
    return "<details class=\"day\"" + std::string(open ? " open" : "") + " data-s=\"" +
           std::to_string(of.programmes[first].start) + "\" data-e=\"" + std::to_string(stop) +
           "\"><summary>" + day_words(of.programmes[first].local_day()) + " <small>" +
           counted(last - first, "programme") + (in_utc ? ", times in UTC" : "") +
           "</small></summary>\n<noscript><ol>\n" + items + "</ol></noscript></details>\n";
}

// The square one, or the one whose width is nearest to what is shown.
std::string logo(const service& of) {
    const guide::picture* best = nullptr;
    const auto rank = [](const guide::picture& each) {
        return std::make_pair(each.width != each.height,
                              std::abs(static_cast<long>(each.width) - static_cast<long>(kWantedPixels)));
    };
    std::string source;
    for (const guide::picture& each : of.pictures) {
        if (each.content == nullptr || (best != nullptr && rank(*best) <= rank(each))) continue;
        std::string uri = check::html::image_uri(*each.content);
        if (uri.empty()) continue;
        best = &each;
        source = std::move(uri);
    }
    return source.empty() ? source
                          : "<img alt=\"" + escaped("Logo of " + name_of(of)) + "\" src=\"" + source + "\">";
}

std::string ensemble_words(const guide::programme_guide& all, const guide::ensemble_id& id) {
    const auto known = all.ensembles.find(id);
    const guide::text* const name = known == all.ensembles.end() ? nullptr : known->second.first();
    return (name == nullptr ? std::string() : from_broadcast(name->value) + " ") + escaped(id.text());
}

std::string article(const guide::programme_guide& all, const service& of, std::size_t number) {
    std::string made = "<article id=\"s" + std::to_string(number) + "\">\n<div class=\"head\">" + logo(of) +
                       "<h2>" + from_broadcast(name_of(of)) + " <small>" + escaped(of.id.text());
    for (const guide::ensemble_id& each : of.ensembles)
        made += ", " + ensemble_words(all, each);
    made += "</small></h2></div>\n" + paragraphs(of.descriptions) + "<p class=\"on\" hidden></p>\n";
    if (of.programmes.empty()) made += "<p><small>No programmes are known.</small></p>\n";
    std::vector<std::size_t> ends;
    for (std::size_t i = 1; i <= of.programmes.size(); ++i)
        if (i == of.programmes.size() || of.programmes[i].local_day() != of.programmes[i - 1].local_day())
            ends.push_back(i);
    std::size_t first = 0;
    for (const std::size_t end : ends) {
        made += day(of, first, end, ends.size() == 1);
        first = end;
    }
    return made + "</article>\n";
}

std::string lower(std::string text) {
    for (char& c : text)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return text;
}

std::string link(const service& of, std::size_t number) {
    return "<li>" + check::html::link_to("s" + std::to_string(number), from_broadcast(name_of(of))) +
           "</li>\n";
}

std::string links(const std::string& summary, const std::vector<std::size_t>& numbers,
                  const std::vector<const service*>& services) {
    std::string made = "<details><summary>" + summary + " <small>" + counted(numbers.size(), "service") +
                       "</small></summary>\n<ul>\n";
    for (const std::size_t each : numbers)
        made += link(*services[each], each);
    return made + "</ul></details>\n";
}

// The services of each ensemble.
std::string navigation(const guide::programme_guide& all, const std::vector<const service*>& services) {
    std::map<guide::ensemble_id, std::vector<std::size_t>> on;
    std::vector<std::size_t> elsewhere;
    for (std::size_t i = 0; i < services.size(); ++i) {
        for (const guide::ensemble_id& each : services[i]->ensembles)
            on[each].push_back(i);
        if (services[i]->ensembles.empty()) elsewhere.push_back(i);
    }
    std::string made = "<nav aria-label=\"Services\">\n";
    for (const auto& [id, numbers] : on)
        made += links(ensemble_words(all, id), numbers, services);
    if (!elsewhere.empty()) made += links("Of no ensemble that is known", elsewhere, services);
    return made + "</nav>\n";
}

std::string header(const guide::programme_guide& of) {
    std::size_t programmes = 0;
    std::set<long> days;
    for (const service& each : of.services)
        for (const programme& one : each.programmes) {
            ++programmes;
            days.insert(one.local_day());
        }
    std::string made = "<header>\n<h1>Programme guide</h1>\n<p>" + counted(of.services.size(), "service") +
                       ", " + counted(programmes, "programme");
    if (!days.empty()) made += ", " + day_words(*days.begin());
    if (days.size() > 1) made += " to " + day_words(*days.rbegin());
    return made + "</p>\n<p>Times are local times as they are broadcast.</p>\n</header>\n";
}

}  // namespace

std::string guide_page(const guide::programme_guide& of) {
    std::vector<std::pair<std::string, const service*>> by_name;
    for (const service& each : of.services)
        by_name.emplace_back(lower(name_of(each)), &each);
    std::stable_sort(by_name.begin(), by_name.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<const service*> services;
    for (const auto& [name, each] : by_name)
        services.push_back(each);
    std::string body = "<a class=\"skip\" href=\"#guide\">Skip to the guide</a>\n" + header(of) +
                       navigation(of, services) + "<main id=\"guide\">\n";
    for (std::size_t i = 0; i < services.size(); ++i)
        body += article(of, *services[i], i);
    return check::html::page_around("Programme guide", kGuideStyle, body + "</main>\n", kGuideScript);
}

}  // namespace dabspi

#include <algorithm>
#include <map>
#include <set>
#include <tuple>

#include "tools/check/html_page.h"
#include "tools/check/html_parts.h"
#include "tools/check/html_text.h"
#include "tools/check/logo_text.h"

namespace dabspi::check::html {

namespace {

const char* outcome(spi::logo_refusal refusal) {
    switch (refusal) {
        case spi::logo_refusal::none: return "written";
        case spi::logo_refusal::no_station: return "not written: no station";
        case spi::logo_refusal::long_service_id: return "not written: a 32-bit service";
        case spi::logo_refusal::format: return "not written: its format";
        case spi::logo_refusal::size_code: return "not written: its size";
        case spi::logo_refusal::too_large: return "not written: too large";
        case spi::logo_refusal::no_name: return "not written: no name";
        case spi::logo_refusal::larger_there: return "not written: a larger one is there";
    }
    return "";
}

std::string figure(const check_report& of, const anchors& where, const image_arrival& arrival, bool first) {
    const sent_object& object = of.past.objects[arrival.object];
    const announcement& announced = of.past.announcements[arrival.uses.front().announcement];
    const std::string anchor = id('l', arrival.object);
    std::string text = "<figure" + (first ? " id=\"" + anchor + "\"" : std::string()) + ">\n";
    const std::string image = image_uri(*object.body);
    if (image.empty()) {
        text += "<p class=\"no-image\">no image that can be shown</p>\n";
    } else {
        text += "<div class=\"plate\"><img alt=\"" + escaped("Logo of " + service_text(announced.station)) +
                "\" src=\"" + image + "\"></div>\n";
    }
    text += "<figcaption>" + service_markup(of, announced.station) + "<br>" + format_text(announced.format) +
            " " + size_text(announced.size_code) + ", " + number_of(object.body->size(), "byte") + "<br>" +
            from_broadcast(object.content_name);
    if (!of.input.folder) text += ", " + place_words(of.input.places, arrival.line);
    std::map<std::string, std::size_t> outcomes;
    for (const image_arrival::use& use : arrival.uses)
        ++outcomes[outcome(use.refusal)];
    for (const auto& [how, count] : outcomes)
        text += "<br>" + how + (count > 1 ? ", " + std::to_string(count) + " times" : "");
    const std::string links = first ? where.links_at(of, anchor) : "";
    if (!links.empty()) text += "<br><span class=\"chips\">" + links + "</span>";
    return text + "</figcaption>\n</figure>\n";
}

}  // namespace

std::string logos_section(const check_report& of, const anchors& where) {
    std::string text = "<section id=\"logos\">\n<h2>Logos</h2>\n";
    // Repetitions that end in the same way are shown once.
    std::set<std::pair<std::size_t, spi::logo_refusal>> shown;
    std::vector<bool> seen(of.past.objects.size());
    std::vector<const image_arrival*> arrivals;
    for (const image_arrival& each : of.past.images) {
        if (each.uses.empty() || !shown.insert({each.object, each.uses.front().refusal}).second) continue;
        arrivals.push_back(&each);
    }
    const auto of_whom = [&](const image_arrival* each) {
        const announcement& announced = of.past.announcements[each->uses.front().announcement];
        return std::make_tuple(announced.station.val(), announced.size_code, each->line);
    };
    std::sort(arrivals.begin(), arrivals.end(),
              [&](const image_arrival* a, const image_arrival* b) { return of_whom(a) < of_whom(b); });
    std::string figures;
    for (const image_arrival* each : arrivals) {
        figures += figure(of, where, *each, !seen[each->object]);
        seen[each->object] = true;
    }
    if (figures.empty()) return text + "<p>No announced image was received.</p>\n</section>\n";
    return text + "<div class=\"figures\">\n" + figures + "</div>\n</section>\n";
}

}  // namespace dabspi::check::html

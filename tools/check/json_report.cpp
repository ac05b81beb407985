#include "tools/check/json_report.h"

#include <nlohmann/json.hpp>

#include "tools/check/local_day.h"
#include "tools/check/logo_text.h"
#include "tools/check/overview.h"
#include "tools/text/utf8.h"

namespace dabspi::check {

namespace {

using nlohmann::ordered_json;

// The line of a recording; of a multiplex the frame.
void add_place(ordered_json& to, const check_report& of, std::size_t line) {
    const bool on_air = line < of.input.places.size() && line != 0;
    to["line"] = line == 0 || of.input.folder || on_air ? ordered_json(nullptr) : ordered_json(line);
    if (of.input.places.empty()) return;
    to["frame"] = on_air ? ordered_json(of.input.places[line].frame) : ordered_json(nullptr);
    to["clock"] = on_air ? ordered_json(of.input.places[line].clock) : ordered_json(nullptr);
}

ordered_json to_json(const check_report& of, const finding& what) {
    const catalogue_entry& entry = entry_of(what.code);
    ordered_json json;
    json["code"] = entry.name;
    json["severity"] = severity_name(entry.how_bad);
    add_place(json, of, what.line);
    json["object"] = what.object == kNone ? ordered_json(nullptr)
                                          : ordered_json(of.past.objects[what.object].content_name);
    json["byte"] = what.byte ? ordered_json(*what.byte) : ordered_json(nullptr);
    json["service"] = what.service ? ordered_json(service_text(*what.service)) : ordered_json(nullptr);
    json["time"] = what.minute ? ordered_json(minute_text(*what.minute)) : ordered_json(nullptr);
    json["text"] = what.text;
    json["more"] = what.more;
    json["why"] = entry.why;
    json["remedy"] = entry.remedy;
    return json;
}

ordered_json to_json(const check_report& of, const service_schedule& schedule) {
    ordered_json json;
    json["service"] = service_text(schedule.service);
    json["name"] = schedule.name;
    json["days"] = ordered_json::array();
    for (const day_summary& each : days_of(of.past, schedule)) {
        ordered_json day;
        day["date"] = day_text(each.day);
        day["programmes"] = each.programmes;
        day["from"] = minute_text(each.first);
        day["to"] = minute_text(each.last);
        day["minutes_covered"] = each.covered;
        json["days"].push_back(std::move(day));
    }
    json["programmes"] = ordered_json::array();
    for (const std::size_t index : schedule.programmes) {
        const programme_arrival& each = of.past.programmes[index];
        ordered_json programme;
        programme["start"] = minute_text(each.start);
        programme["minutes"] = each.duration / 60;
        programme["name"] = each.name;
        if (!of.input.folder) add_place(programme, of, each.line);
        json["programmes"].push_back(std::move(programme));
    }
    return json;
}

const char* outcome_name(spi::logo_refusal refusal) {
    switch (refusal) {
        case spi::logo_refusal::none: return "written";
        case spi::logo_refusal::too_large: return "too-large";
        case spi::logo_refusal::larger_there: return "larger-there";
        default: return "refused";
    }
}

ordered_json logos(const check_report& of) {
    ordered_json all = ordered_json::array();
    for (const image_arrival& arrival : of.past.images) {
        for (const image_arrival::use& use : arrival.uses) {
            const announcement& announced = of.past.announcements[use.announcement];
            ordered_json json;
            json["station"] = service_text(announced.station);
            json["content_name"] = announced.content_name;
            json["format"] = format_text(announced.format);
            json["size"] = size_text(announced.size_code);
            json["bytes"] = of.past.objects[arrival.object].body->size();
            json["outcome"] = outcome_name(use.refusal);
            json["file"] =
                use.refusal == spi::logo_refusal::none ? ordered_json(announced.file) : ordered_json(nullptr);
            if (!of.input.folder) add_place(json, of, arrival.line);
            all.push_back(std::move(json));
        }
    }
    return all;
}

ordered_json names_of(const overview& all, const std::vector<std::size_t>& which) {
    ordered_json names = ordered_json::array();
    for (const std::size_t each : which)
        names.push_back(service_text(all.services[each].service));
    return names;
}

ordered_json to_json(const sent_day& of) {
    ordered_json day;
    day["date"] = day_text(of.sum.day);
    day["from"] = minute_text(of.sum.first);
    day["to"] = minute_text(of.sum.last);
    day["programmes"] = of.sum.programmes;
    day["gaps"] = of.gaps;
    day["described"] = of.described;
    day["with_genre"] = of.with_genre;
    day["kept"] = of.kept;
    return day;
}

ordered_json overview_json(const check_report& of) {
    const overview all = overview_of(of);
    ordered_json json;
    json["services"] = ordered_json::array();
    for (const service_overview& each : all.services) {
        ordered_json service;
        service["service"] = service_text(each.service);
        service["name"] = each.name;
        service["announced"] = each.announced;
        service["logos"] = ordered_json::array();
        for (std::size_t size = 1; size <= kLogoSizes; ++size) {
            const logo_cell& cell = each.logos.at(size % kLogoSizes);
            if (cell.announced == 0) continue;
            service["logos"].push_back(
                {{"size", size_text(static_cast<std::uint8_t>(size % kLogoSizes))},
                 {"announced", cell.announced},
                 {"sent", cell.sent},
                 {"written", cell.written},
                 {"bytes", cell.sent == 0 ? ordered_json(nullptr) : ordered_json(cell.bytes)}});
        }
        service["days"] = ordered_json::array();
        for (const sent_day& day : each.days)
            service["days"].push_back(to_json(day));
        json["services"].push_back(std::move(service));
    }
    json["without_schedule"] = names_of(all, all.without_schedule());
    json["without_logo"] = names_of(all, all.without_logo());
    json["not_announced"] = names_of(all, all.not_announced());
    json["objects"] = ordered_json::array();
    for (const object_version& each : all.objects) {
        const sent_object& object = of.past.objects[each.object];
        json["objects"].push_back(
            {{"object", object.content_name},
             {"kind", kind_name(object.tree.kind)},
             {"bytes", object.body->size()},
             {"version", each.version.empty() ? ordered_json(nullptr) : ordered_json(each.version)},
             {"created", each.created.empty() ? ordered_json(nullptr) : ordered_json(each.created)}});
    }
    return json;
}

}  // namespace

std::string json_report(const check_report& of) {
    const auto counts = count_by_severity(of.findings);
    ordered_json json;
    json["input"] = of.input.calls.name;
    json["ensemble"] = ensemble_text(of);
    json["date"] = of.past.clock.empty() ? ordered_json(nullptr)
                                         : ordered_json(day_text(of.past.clock.back().minute / kDayMinutes));
    json["assumed"] = of.input.said;
    json["errors"] = counts[2];
    json["warnings"] = counts[1];
    json["notes"] = counts[0];
    json["left_out"] = of.left_out;
    json["findings"] = ordered_json::array();
    for (const finding& each : of.findings)
        json["findings"].push_back(to_json(of, each));
    json["services"] = ordered_json::array();
    for (const service_schedule& each : of.schedules)
        json["services"].push_back(to_json(of, each));
    json["logos"] = logos(of);
    json["overview"] = overview_json(of);
    return printable_json(json.dump(-1, ' ', false, ordered_json::error_handler_t::replace)) + "\n";
}

}  // namespace dabspi::check

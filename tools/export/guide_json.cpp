#include "tools/export/guide_json.h"

#include <cstdio>
#include <ctime>
#include <nlohmann/json.hpp>

#include "tools/export/genre_names.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

using json = nlohmann::ordered_json;

// "2026-03-10T07:00:00+01:00"; "Z" where no offset was coded.
std::string iso_time(std::int64_t instant, std::optional<int> offset) {
    const std::time_t local = static_cast<std::time_t>(instant + offset.value_or(0) * 1800);
    std::tm parts{};
    ::gmtime_r(&local, &parts);
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d", parts.tm_year + 1900, parts.tm_mon + 1,
                  parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec);
    std::string result = text;
    if (!offset) return result + "Z";
    const int minutes = std::abs(*offset) * 30;
    std::snprintf(text, sizeof text, "%c%02d:%02d", *offset < 0 ? '-' : '+', minutes / 60, minutes % 60);
    return result + text;
}

json json_of(const std::vector<guide::text>& texts) {
    json all = json::array();
    for (const guide::text& each : texts) {
        json one = json::object();
        one["text"] = each.value;
        if (!each.language.empty()) one["language"] = each.language;
        all.push_back(std::move(one));
    }
    return all;
}

void add_names(json& to, const guide::texts& names) {
    json made = json::object();
    if (!names.short_texts.empty()) made["short"] = json_of(names.short_texts);
    if (!names.medium_texts.empty()) made["medium"] = json_of(names.medium_texts);
    if (!names.long_texts.empty()) made["long"] = json_of(names.long_texts);
    to["names"] = std::move(made);
}

json json_of(const guide::picture& of) {
    json made = {{"url", of.url}};
    if (!of.mime.empty()) made["mime"] = of.mime;
    if (!of.type.empty()) made["type"] = of.type;
    if (of.width != 0) made["width"] = of.width;
    if (of.height != 0) made["height"] = of.height;
    if (of.content != nullptr) made["bytes"] = of.content->size();
    return made;
}

// Names, descriptions and all else that programmes and services share.
void describe(json& to, const guide::described& what, const char* pictures) {
    add_names(to, what.names);
    json descriptions = json::object();
    if (!what.descriptions.short_texts.empty())
        descriptions["short"] = json_of(what.descriptions.short_texts);
    if (!what.descriptions.long_texts.empty()) descriptions["long"] = json_of(what.descriptions.long_texts);
    to["descriptions"] = std::move(descriptions);
    to["genres"] = json::array();
    for (const spi_object::genre_value& each : what.genres)
        to["genres"].push_back({{"id", spi_object::genre_text(each)}, {"name", genre_name(each)}});
    if (!what.keywords.empty()) to["keywords"] = what.keywords;
    to[pictures] = json::array();
    for (const guide::picture& each : what.pictures)
        to[pictures].push_back(json_of(each));
    to["links"] = json::array();
    for (const guide::link& each : what.links) {
        json one = {{"uri", each.uri}};
        if (!each.mime.empty()) one["mime"] = each.mime;
        if (!each.description.empty()) one["description"] = each.description;
        to["links"].push_back(std::move(one));
    }
}

json json_of(const guide::programme& of) {
    json made = json::object();
    made["start"] = iso_time(of.start, of.offset);
    made["stop"] = iso_time(of.stop(), of.offset);
    made["duration"] = of.duration;
    if (!of.id.empty()) made["id"] = of.id;
    if (of.short_id) made["short_id"] = *of.short_id;
    if (!of.language.empty()) made["language"] = of.language;
    describe(made, of, "pictures");
    return made;
}

json json_of(const guide::service& of) {
    char sid[16];
    std::snprintf(sid, sizeof sid, of.id.sid > 0xFFFF ? "%08x" : "%04x", unsigned{of.id.sid});
    char ecc[8];
    std::snprintf(ecc, sizeof ecc, "%02x", unsigned{of.id.ecc});
    json made = {{"id", of.id.text()}, {"ecc", ecc}, {"sid", sid}, {"scids", of.id.scids}};
    made["ensembles"] = json::array();
    for (const guide::ensemble_id& each : of.ensembles)
        made["ensembles"].push_back(each.text());
    made["announced"] = of.announced;
    describe(made, of, "logos");
    made["programmes"] = json::array();
    for (const guide::programme& each : of.programmes)
        made["programmes"].push_back(json_of(each));
    return made;
}

}  // namespace

// A service a line: the whole is never held as a tree.
std::string guide_json(const guide::programme_guide& of) {
    json ensembles = json::array();
    for (const auto& [id, names] : of.ensembles) {
        json one = {{"id", id.text()}};
        add_names(one, names);
        ensembles.push_back(std::move(one));
    }
    std::string text = "{\"ensembles\": " + ensembles.dump() + ",\n\"services\": [";
    for (const guide::service& each : of.services)
        text += (&each == &of.services.front() ? "\n" : ",\n") + json_of(each).dump();
    const guide::guide_counts& counts = of.counts;
    const json counted = {{"objects", counts.objects},
                          {"replaced_objects", counts.replaced_objects},
                          {"malformed_objects", counts.malformed_objects},
                          {"repaired_characters", counts.repaired_characters},
                          {"programmes_without_service", counts.without_service},
                          {"programmes_without_time", counts.without_time},
                          {"programmes_with_the_same_start", counts.same_start},
                          {"images", counts.images},
                          {"images_that_nothing_announces", counts.unused_images}};
    return printable_json(text + "\n],\n\"counts\": " + counted.dump() + "}\n");
}

}  // namespace dabspi

#include "tools/export/xmltv.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <pugixml.hpp>
#include <set>
#include <sstream>

#include "tools/export/genre_names.h"
#include "tools/text/base64.h"

namespace dabspi {

namespace {

using guide::programme;
using guide::service;

// "20260310070000 +0100"
std::string xmltv_time(std::int64_t instant, std::optional<int> offset) {
    const int half_hours = offset.value_or(0);
    const std::time_t local = static_cast<std::time_t>(instant + half_hours * 1800);
    std::tm parts{};
    ::gmtime_r(&local, &parts);
    char text[64];
    const int minutes = std::abs(half_hours) * 30;
    std::snprintf(text, sizeof text, "%04d%02d%02d%02d%02d%02d %c%02d%02d", parts.tm_year + 1900,
                  parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec,
                  half_hours < 0 ? '-' : '+', minutes / 60, minutes % 60);
    return text;
}

void append(pugi::xml_node to, const char* name, const guide::text& what) {
    pugi::xml_node made = to.append_child(name);
    if (!what.language.empty()) made.append_attribute("lang") = what.language.c_str();
    made.append_child(pugi::node_pcdata).set_value(what.value.c_str());
}

void append(pugi::xml_node to, const char* name, const std::string& value) {
    append(to, name, guide::text{value, {}});
}

// Where a program finds the picture; empty: nowhere.
std::string source_of(const guide::picture& of) {
    if (of.content != nullptr) {
        const bool png = of.content->size() > 1 && of.content->front() == 0x89;
        return std::string("data:image/") + (png ? "png" : "jpeg") + ";base64," + encode_base64(*of.content);
    }
    const bool on_the_net = of.url.rfind("http://", 0) == 0 || of.url.rfind("https://", 0) == 0;
    return on_the_net ? of.url : std::string();
}

void append_icons(pugi::xml_node to, const std::vector<guide::picture>& pictures) {
    for (const guide::picture& each : pictures) {
        const std::string source = source_of(each);
        if (source.empty()) continue;
        pugi::xml_node made = to.append_child("icon");
        made.append_attribute("src") = source.c_str();
        if (each.width == 0 || each.height == 0) continue;
        made.append_attribute("width") = each.width;
        made.append_attribute("height") = each.height;
    }
}

void append_urls(pugi::xml_node to, const std::vector<guide::link>& links) {
    for (const guide::link& each : links)
        if (each.uri.rfind("http", 0) == 0) append(to, "url", each.uri);
}

void append_channel(pugi::xml_node to, const service& of) {
    pugi::xml_node made = to.append_child("channel");
    made.append_attribute("id") = xmltv_channel(of.id).c_str();
    std::set<std::string> said;
    for (const auto* const all : {&of.names.medium_texts, &of.names.long_texts, &of.names.short_texts})
        for (const guide::text& each : *all)
            if (said.insert(each.value).second) append(made, "display-name", each);
    if (said.empty()) append(made, "display-name", guide::name_of(of));
    append_icons(made, of.pictures);
    append_urls(made, of.links);
}

// The document type wants this order.
void append_programme(pugi::xml_node to, const service& of, const programme& what, std::int64_t stop) {
    pugi::xml_node made = to.append_child("programme");
    made.append_attribute("start") = xmltv_time(what.start, what.offset).c_str();
    if (stop > what.start) made.append_attribute("stop") = xmltv_time(stop, what.offset).c_str();
    made.append_attribute("channel") = xmltv_channel(of.id).c_str();
    const std::vector<guide::text>& names = what.names.longest();
    for (const guide::text& each : names)
        append(made, "title", each);
    if (names.empty()) append(made, "title", std::string("No title"));
    for (const guide::text& each : what.descriptions.longest())
        append(made, "desc", each);
    for (const spi_object::genre_value& each : what.genres)
        append(made, "category", guide::text{genre_name(each), "en"});
    for (const std::string& each : what.keywords)
        append(made, "keyword", each);
    if (!what.language.empty()) append(made, "language", what.language);
    append_icons(made, what.pictures);
    append_urls(made, what.links);
    if (!what.id.empty()) {
        append(made, "episode-num", what.id);
        made.last_child().append_attribute("system") = "crid";
    }
    if (what.short_id) {
        append(made, "episode-num", std::to_string(*what.short_id));
        made.last_child().append_attribute("system") = "dab-short-id";
    }
}

}  // namespace

std::string xmltv_channel(const guide::service_id& id) {
    const bool is_long = id.sid > 0xFFFF;
    // The country code: of a long identifier it stands behind the ECC.
    const unsigned country = is_long ? id.sid >> 20 & 0xF : id.sid >> 12 & 0xF;
    char text[48];
    std::snprintf(text, sizeof text, is_long ? "%x.%08x.%x%02x.dab" : "%x.%04x.%x%02x.dab",
                  unsigned{id.scids}, unsigned{id.sid}, country, unsigned{id.ecc});
    return text;
}

std::string xmltv_of(const guide::programme_guide& of) {
    pugi::xml_document document;
    pugi::xml_node declaration = document.append_child(pugi::node_declaration);
    declaration.append_attribute("version") = "1.0";
    declaration.append_attribute("encoding") = "UTF-8";
    document.append_child(pugi::node_doctype).set_value("tv SYSTEM \"xmltv.dtd\"");
    pugi::xml_node tv = document.append_child("tv");
    tv.append_attribute("generator-info-name") = "dabspi";
    for (const service& each : of.services)
        append_channel(tv, each);
    for (const service& each : of.services)
        for (std::size_t i = 0; i < each.programmes.size(); ++i) {
            const programme& one = each.programmes[i];
            const bool open = one.duration == 0 && i + 1 < each.programmes.size();
            append_programme(tv, each, one, open ? each.programmes[i + 1].start : one.stop());
        }
    std::ostringstream out;
    document.save(out, "  ", pugi::format_indent, pugi::encoding_utf8);
    return out.str();
}

}  // namespace dabspi

#include "tools/inspect/json_report.h"

#include <cstdio>
#include <nlohmann/json.hpp>

#include "tools/inspect/image_header.h"
#include "tools/spi/receiver_values.h"
#include "tools/text/hexadecimal.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

using namespace spi_object;
using nlohmann::ordered_json;

ordered_json to_json(const problem& of) {
    ordered_json json;
    json["severity"] = severity_of(of.code) == severity::malformed ? "malformed" : "remark";
    json["code"] = code_name(of.code);
    json["offset"] = of.offset;
    json["text"] = of.text;
    if (!of.receiver.empty()) json["receiver"] = of.receiver;
    return json;
}

ordered_json to_json(const std::vector<problem>& of) {
    ordered_json json = ordered_json::array();
    for (const problem& each : of)
        json.push_back(to_json(each));
    return json;
}

const char* word(reading how) {
    switch (how) {
        case reading::read: return "read";
        case reading::not_needed: return "not needed";
        case reading::passed_over: break;
    }
    return "passed over";
}

const char* word(node_kind kind) {
    switch (kind) {
        case node_kind::attribute: return "attribute";
        case node_kind::token: return "token";
        case node_kind::element: break;
    }
    return "element";
}

void add_value(ordered_json& json, const node& of, byte_view content) {
    if (std::holds_alternative<std::monostate>(of.decoded)) return;
    const auto* const number = std::get_if<std::uint32_t>(&of.decoded);
    const value_type type = of.attribute != nullptr ? of.attribute->type : value_type::string;
    if (number != nullptr && type != value_type::enumeration) {
        json["value"] = *number;  // of a duration: seconds
        return;
    }
    json["value"] = value_text(of);
    if (number != nullptr) json["number"] = *number;
    if (const auto* time = std::get_if<time_value>(&of.decoded)) {
        json["utc"] = utc_text(*time);
        json["local"] = local_text(*time);
        if (time->offset) json["offset_minutes"] = *time->offset * 30;
    }
    const auto* const text = std::get_if<text_value>(&of.decoded);
    if (text != nullptr && (text->tokens || !is_well_formed_utf8(text->text)))
        json["coded"] = all_bytes(content);
}

ordered_json to_json(const node& of, byte_view body, bool hex) {
    const byte_view content = body.part(of.content(), of.length);
    ordered_json json;
    json["kind"] = word(of.kind);
    json["tag"] = hexadecimal(of.tag, 2);
    if (of.name() != nullptr) json["name"] = of.name();
    json["offset"] = of.offset;
    json["header"] = of.header;
    json["length"] = of.length;
    if (of.stated != of.length) json["stated_length"] = of.stated;
    json["receiver"] = word(of.receiver);
    add_value(json, of, content);
    const bool raw =
        std::holds_alternative<std::monostate>(of.decoded) && of.children.empty() && !content.empty();
    if (raw || (hex && of.children.empty())) json["bytes"] = all_bytes(content);
    if (!of.problems.empty()) json["problems"] = to_json(of.problems);
    if (!of.children.empty()) {
        ordered_json& children = json["children"] = ordered_json::array();
        for (const node& each : of.children)
            children.push_back(to_json(each, body, hex));
    }
    return json;
}

void add_service(ordered_json& json, const spi::ServElemId& service) {
    json["sid"] = hexadecimal(service.sid);
    json["ecc"] = hexadecimal(service.ecc);
    json["scids"] = service.scids;
}

void add_name(ordered_json& json, const std::string& name) {
    json["name"] = name;
    if (!is_well_formed_utf8(name)) json["name_hex"] = all_bytes(name);
}

ordered_json to_json(const taken_programme& of) {
    ordered_json json;
    json["offset"] = of.offset;
    json["dropped"] = of.dropped.has_value();
    if (!of.dropped) add_service(json, of.service);
    const spi::MotDateTime start = of.programme.time.local_time(0);
    json["date"] = start.date();
    json["time"] = start.time();
    json["duration"] = of.programme.duration / 60;
    add_name(json, of.programme.name);
    return json;
}

ordered_json to_json(const taken_service& of) {
    ordered_json json;
    json["offset"] = of.offset;
    add_service(json, of.info.id);
    add_name(json, of.info.name);
    ordered_json& logos = json["logos"] = ordered_json::array();
    std::size_t at = 0;
    for (const spi::SpiLogoInfo& logo : of.info.logos) {
        ordered_json each;
        each["offset"] = of.logo_offsets[at++];
        add_service(each, logo.service);
        each["format"] = logo.image_format;
        each["size_code"] = logo.size_code;
        add_name(each, logo.name);
        logos.push_back(std::move(each));
    }
    return json;
}

ordered_json to_json(const receiver_view& of) {
    ordered_json json;
    json["reads"] = of.read;
    json["ensemble"] = hexadecimal(of.ensemble);
    json["programmes"] = ordered_json::array();
    for (const taken_programme& each : of.programmes)
        json["programmes"].push_back(to_json(each));
    json["services"] = ordered_json::array();
    for (const taken_service& each : of.services)
        json["services"].push_back(to_json(each));
    if (of.more != 0) json["more"] = of.more;
    return json;
}

ordered_json head(const inspected_body& of) {
    ordered_json json;
    json["file"] = of.source;
    if (!of.lines.empty()) json["lines"] = of.lines;
    if (!of.place.empty()) json["place"] = of.place;
    if (of.content_type) {
        json["content_name"] = of.content_name;
        json["content_type"] = *of.content_type;
        json["content_subtype"] = *of.content_subtype;
    }
    return json;
}

std::string line_of(const ordered_json& json) {
    // Ill-formed parts of texts become one U+FFFD each; the bytes stand beside them.
    return printable_json(json.dump(-1, ' ', false, ordered_json::error_handler_t::replace)) + "\n";
}

}  // namespace

std::string json_report(const object_report& of, bool hex) {
    ordered_json json = head(*of.body);
    json["kind"] = kind_name(of.tree.kind);
    json["size"] = of.tree.size;
    json["well_formed"] = of.tree.well_formed();
    json["malformed"] = of.tree.malformed;
    json["remarks"] = of.tree.remarks;
    if (of.tree.omitted != 0) json["omitted"] = of.tree.omitted;
    if (!of.tree.problems.empty()) json["problems"] = to_json(of.tree.problems);
    ordered_json& tops = json["tree"] = ordered_json::array();
    for (const node& each : of.tree.tops)
        tops.push_back(to_json(each, *of.body->body, hex));
    json["receiver"] = to_json(of.taken);
    return line_of(json);
}

std::string json_of_other(const inspected_body& of) {
    ordered_json json = head(of);
    const std::optional<image_header> image = read_image_header(*of.body);
    json["kind"] = image ? "image" : "other";
    json["size"] = of.body->size();
    if (image) {
        json["format"] = image->kind;
        json["width"] = image->width;
        json["height"] = image->height;
    } else if (!of.what.empty()) {
        json["text"] = of.what;
    }
    return line_of(json);
}

}  // namespace dabspi

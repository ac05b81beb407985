#include "tools/recording/notification_json.h"

#include <nlohmann/json.hpp>

#include "tools/text/hexadecimal.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

using nlohmann::ordered_json;

ordered_json to_json(const programme& of) {
    ordered_json json;
    json["date"] = of.start.date();
    json["time"] = of.start.time();
    json["duration"] = of.duration;
    json["name"] = of.name;
    if (!is_well_formed_utf8(of.name)) json["name_hex"] = all_bytes(of.name);
    return json;
}

ordered_json event(const char* name) {
    ordered_json json;
    json["event"] = name;
    return json;
}

void add_service(ordered_json& json, const service_id& service) {
    json["sid"] = hexadecimal(service.sid);
    json["ecc"] = hexadecimal(service.ecc);
    json["scids"] = service.scids;
}

ordered_json to_json(const now_next& pair) {
    ordered_json json = event("now_next");
    json["now"] = to_json(pair.now);
    json["next"] = to_json(pair.next);
    return json;
}

ordered_json to_json(const station_logo& logo) {
    ordered_json json = event("station_logo");
    add_service(json, logo.station);
    json["format"] = logo.format;
    json["size_code"] = logo.size_code;
    json["file"] = logo.file;
    return json;
}

ordered_json to_json(const programme_info& info) {
    ordered_json json = event("programme_info");
    add_service(json, info.service);
    json["programme"] = to_json(info.item);
    return json;
}

}  // namespace

std::string notification_json(const notification& what) {
    const ordered_json json = std::visit([](const auto& record) { return to_json(record); }, what);
    // The JSON library's replacement is the one wanted: one U+FFFD for each maximal ill-formed part.
    return printable_json(json.dump(-1, ' ', false, ordered_json::error_handler_t::replace));
}

}  // namespace dabspi

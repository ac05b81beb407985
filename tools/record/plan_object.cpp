#include "tools/record/plan_object.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "tools/recording/json_values.h"
#include "tools/spi/values.h"
#include "tools/text/utf8.h"

namespace dabspi {

using nlohmann::json;

namespace {

// true, or the tokens themselves: {"0x01": "News"}.
token_choice take_tokens(plan_keys& keys) {
    token_choice choice;
    const json* const value = keys.find("tokens");
    if (value == nullptr) return choice;
    if (value->is_boolean()) {
        choice.build = value->get<bool>();
        return choice;
    }
    if (!value->is_object()) {
        keys.error_at("tokens",
                      "is " + json_text(*value) + "; true is needed, or the tokens: {\"0x01\": \"News\"}");
        return choice;
    }
    for (const auto& [code, text] : value->items()) {
        const whole_number number = read_whole_number(json(code), 255);
        const auto byte = static_cast<std::uint8_t>(number.value);
        const auto& codes = token_codes();
        const std::string where = keys.at("tokens") + "/" + code;
        if (!number.error.empty() || std::find(codes.begin(), codes.end(), byte) == codes.end()) {
            keys.errors().push_back(
                {where, "is no token byte; these are 0x01 to 0x08, 0x0B, 0x0C, 0x0E to 0x13"});
        } else if (!text.is_string() || text.get_ref<const std::string&>().empty() ||
                   text.get_ref<const std::string&>().size() > 255) {
            keys.errors().push_back({where, "a token stands for a text of 1 to 255 bytes"});
        } else if (!choice.given.emplace(byte, text.get<std::string>()).second) {
            keys.errors().push_back({where, "the token byte stands twice"});
        }
    }
    return choice;
}

std::vector<int> take_days(plan_keys& keys) {
    std::vector<int> days;
    const json* const value = keys.array("days");
    if (value == nullptr) return {0};
    for (const json& each : *value) {
        // One that only an unsigned number holds would turn into a negative one.
        const bool huge = each.is_number_unsigned() && each.get<std::uint64_t>() > kMostDays;
        const bool whole = each.is_number_integer() && !huge;
        const auto day = whole ? each.get<std::int64_t>() : 0;
        if (whole && day >= -kMostDays && day <= kMostDays) {
            days.push_back(static_cast<int>(day));
        } else {
            keys.error_at("days", json_text(each) + " is no count of days from -366 to 366");
        }
    }
    return days;
}

// A path inside the recording's folder.
bool stays_inside(const std::string& path) {
    if (path.empty() || path.front() == '/' || path.back() == '/') return false;
    if (path.find('\0') != std::string::npos) return false;
    for (std::size_t at = 0; at <= path.size();) {
        const std::size_t end = std::min(path.find('/', at), path.size());
        const std::string part = path.substr(at, end - at);
        if (part.empty() || part == "." || part == "..") return false;
        at = end + 1;
    }
    return true;
}

// "offset" or "zone" of a document.
void take_local_time(plan_keys& keys, planned_object& made) {
    const std::string* const offset = keys.text("offset");
    const std::string* const zone = keys.text("zone");
    if (offset != nullptr && zone != nullptr) keys.error("\"offset\" and \"zone\" exclude one another");
    if (offset != nullptr) {
        made.offset = *offset;
        made.local = local_offset::fixed(*offset);
        if (!made.local)
            keys.error_at("offset", in_quotes(*offset) + " is no offset such as \"+01:00\", in half-hours");
    } else if (zone != nullptr) {
        made.offset = *zone;
        std::string error;
        made.local = local_offset::zone(*zone, error);
        if (!made.local) keys.error_at("zone", error);
    }
}

}  // namespace

std::optional<service_id> take_data_service(plan_keys& keys, const char* key) {
    const json* const value = keys.find(key);
    if (value == nullptr) return std::nullopt;
    service_id service;
    if (value->is_object()) {
        plan_keys inner(*value, keys.at(key), "a data service", keys.errors());
        inner.number("sid", service.sid, true);
        inner.number("ecc", service.ecc);
        inner.number("scids", service.scids);
        inner.refuse_others();
        return service;
    }
    if (keys.number(key, service.sid)) service.ecc = static_cast<std::uint8_t>(service.sid >> 24);
    return service;
}

planned_object take_object(const json& from, const std::string& where, std::vector<plan_error>& errors) {
    plan_keys keys(from, where, "an object to send", errors);
    planned_object made;
    made.where = where;
    const std::size_t errors_before = errors.size();
    const std::pair<const char*, planned_object::kind> kinds[] = {{"xml", planned_object::kind::xml},
                                                                  {"image", planned_object::kind::image},
                                                                  {"object", planned_object::kind::object}};
    std::size_t given = 0;
    for (const auto& [key, what] : kinds) {
        const std::string* const source = keys.text(key);
        if (source == nullptr) continue;
        ++given;
        made.what = what;
        made.source = *source;
        if (source->find('\0') != std::string::npos)
            keys.error_at(key, in_quotes(*source) + " is no file's name");
    }
    if (given != 1 && from.is_object() && errors.size() == errors_before)
        keys.error(given == 0 ? "say what is sent: \"xml\", \"image\" or \"object\", with the name of a file"
                              : "\"xml\", \"image\" and \"object\" exclude one another");
    if (const std::string* const name = keys.text("name")) made.name = *name;
    if (const std::string* const file = keys.text("file")) {
        made.file = *file;
        if (!stays_inside(*file))
            keys.error_at("file", in_quotes(*file) + " is no name inside the recording's folder");
    }
    made.in_line = keys.flag("inline");
    if (made.in_line && made.file) keys.error("\"file\" and \"inline\" exclude one another");
    made.days = take_days(keys);
    made.data_service = take_data_service(keys, "data_service");
    std::uint8_t type = 0;
    std::uint16_t subtype = 0;
    const bool ready = made.what == planned_object::kind::object && given == 1;
    if (keys.number("content_type", type, ready)) made.content_type = type;
    if (keys.number("content_subtype", subtype, ready)) made.content_subtype = subtype;
    if (ready && !made.name) keys.error("an object that is sent as it is needs the key \"name\"");
    if (made.what == planned_object::kind::xml) {
        made.tokens = take_tokens(keys);
        made.lenient = keys.flag("lenient");
        take_local_time(keys, made);
        if (const std::string* const id = keys.text("ensemble")) {
            made.ensemble = spi_object::parse_ensemble_id(*id);
            if (!made.ensemble)
                keys.error_at("ensemble",
                              in_quotes(*id) + " is no ensemble such as \"e1.ce15\": ECC and EId");
        }
    }
    keys.refuse_others();
    return made;
}

}  // namespace dabspi

#include "tools/recording/recording_line.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>

#include "tools/recording/json_keys.h"
#include "tools/recording/json_reader.h"
#include "tools/recording/json_values.h"
#include "tools/text/base64.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

using nlohmann::json;

constexpr std::size_t kMostKeys = 100;  // of a line; calls have up to eight

void take_service(json_keys& keys, service_id& service) {
    keys.number("sid", service.sid, true);
    keys.number("ecc", service.ecc);
    keys.number("scids", service.scids);
}

void take_clock_text(json_keys& keys, const char* key, std::size_t digits, std::string& to) {
    const std::string* text = keys.text(key, true);
    if (text == nullptr) return;
    to = *text;
    // Only a text of the right length is ever converted.
    if (text->size() != digits) return;
    if (std::all_of(text->begin(), text->end(), [](char c) { return c >= '0' && c <= '9'; })) return;
    keys.error_at(key, in_quotes(*text) + " cannot be converted: it must be " + std::to_string(digits) +
                           " digits, " + (digits == 8 ? "YYYYMMDD" : "HHMM"));
}

std::shared_ptr<const bytes> take_body(json_keys& keys, body_files& files) {
    const std::string* file = keys.text("file");
    const std::string* body = keys.text("body");
    if (keys.has("file") && keys.has("body")) {
        keys.error("both \"file\" and \"body\" are given; give exactly one");
        return nullptr;
    }
    if (!keys.has("file") && !keys.has("body")) {
        keys.error("FeedMotBody needs the body: give \"file\" (a path) or \"body\" (base64)");
        return nullptr;
    }
    if (file != nullptr) {
        const body_files::result& read = files.read(*file);
        if (read.body == nullptr) keys.error(read.error);
        return read.body;
    }
    if (body == nullptr) return nullptr;
    base64_result decoded = decode_base64(*body);
    if (!decoded.error.empty()) {
        keys.error_at("body", "is not base64: " + decoded.error);
    } else if (decoded.data.size() > std::numeric_limits<std::uint32_t>::max()) {
        keys.error_at("body", "is longer than the longest body of 4294967295 bytes");
    }
    return std::make_shared<const bytes>(std::move(decoded.data));
}

set_date_time take_set_date_time(json_keys& keys) {
    set_date_time call;
    take_clock_text(keys, "date", 8, call.date);
    take_clock_text(keys, "time", 4, call.time);
    return call;
}

set_current_service take_set_current_service(json_keys& keys) {
    set_current_service call;
    take_service(keys, call.service);
    keys.number("ensemble", call.ensemble, true);
    return call;
}

feed_mot_body take_feed_mot_body(json_keys& keys, body_files& files) {
    feed_mot_body call;
    keys.number("content_type", call.content_type, true);
    keys.number("content_subtype", call.content_subtype, true);
    if (const std::string* name = keys.text("content_name", true)) call.content_name = *name;
    take_service(keys, call.service);
    call.body = take_body(keys, files);
    return call;
}

}  // namespace

recording_line read_recording_line(std::string_view line, body_files& files) {
    recording_line result;
    json_limits limits;
    limits.kept_depth = 1;  // no call has values with parts
    limits.most_values = kMostKeys;
    read_json_text read = read_json(line, limits, false);
    if (!read.error.empty()) {
        result.errors.push_back(std::move(read.error));
        return result;
    }
    for (const std::string& each : read.twice)
        result.errors.push_back("the key " + in_quotes(each.substr(1)) + " stands twice");
    const json& object = read.value;
    if (!object.is_object()) {
        result.errors.push_back("a line must hold one JSON object, such as {\"call\":\"SetDateTime\",...}");
        return result;
    }
    const auto name = object.find("call");
    if (name == object.end() || !name->is_string()) {
        result.errors.push_back(name == object.end() ? "the key \"call\" is missing"
                                                     : "call is " + json_text(*name) + "; a text is needed");
        return result;
    }

    const auto& what = name->get_ref<const std::string&>();
    json_keys keys(object, what, [&result](const std::string& key, const std::string& text) {
        result.errors.push_back(key.empty() ? text : key + " " + text);
    });
    if (what == "SetDateTime") {
        result.what = take_set_date_time(keys);
    } else if (what == "SetCurrentService") {
        result.what = take_set_current_service(keys);
    } else if (what == "FeedMotBody") {
        result.what = take_feed_mot_body(keys, files);
    } else if (what == "ResendNowNext") {
        result.what = resend_now_next{};
    } else {
        result.errors.push_back(
            "unknown call " + in_quotes(what) +
            "; the calls are SetDateTime, SetCurrentService, FeedMotBody and ResendNowNext");
        return result;
    }
    keys.refuse_others("call");
    if (!result.errors.empty()) result.what.reset();
    return result;
}

}  // namespace dabspi

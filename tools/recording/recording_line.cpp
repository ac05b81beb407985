#include "tools/recording/recording_line.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>

#include "tools/recording/json_reader.h"
#include "tools/recording/json_values.h"
#include "tools/text/base64.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

using nlohmann::json;

constexpr std::size_t kMostKeys = 100;  // of a line; calls have up to eight

// Takes the keys of one call. Every key that nobody asked for is unknown in that call.
class call_keys {
 public:
    call_keys(const json& object, std::string name, std::vector<std::string>& errors)
        : object_(object), name_(std::move(name)), errors_(errors) {}

    bool has(const char* key) const { return object_.contains(key); }

    template <typename Unsigned>
    void take_number(const char* key, Unsigned& to, bool required) {
        const json* value = find(key, required);
        if (value == nullptr) return;
        const whole_number read = read_whole_number(*value, std::numeric_limits<Unsigned>::max());
        if (!read.error.empty()) {
            error(std::string(key) + " " + read.error);
        } else {
            to = static_cast<Unsigned>(read.value);
        }
    }

    // Null if the key is missing or its value is not a text; the error is noted.
    const std::string* take_text(const char* key, bool required) {
        const json* value = find(key, required);
        if (value == nullptr) return nullptr;
        if (value->is_string()) return value->get_ptr<const std::string*>();
        error(std::string(key) + " is " + json_text(*value) + "; a text is needed");
        return nullptr;
    }

    void error(const std::string& text) { errors_.push_back(text); }

    void refuse_others() {
        for (const auto& [key, value] : object_.items()) {
            if (key == "call" || std::find(asked_.begin(), asked_.end(), key) != asked_.end()) continue;
            std::string text = "unknown key " + in_quotes(key) + "; " + name_ + " takes ";
            if (asked_.empty()) text += "none";
            for (const std::string& known : asked_)
                text += (&known == &asked_.front() ? "" : ", ") + known;
            error(text);
        }
    }

 private:
    const json* find(const char* key, bool required) {
        asked_.emplace_back(key);
        const auto found = object_.find(key);
        if (found != object_.end()) return &*found;
        if (required) error(name_ + " needs the key \"" + key + "\"");
        return nullptr;
    }

    const json& object_;
    std::string name_;
    std::vector<std::string>& errors_;
    std::vector<std::string> asked_;
};

void take_service(call_keys& keys, service_id& service) {
    keys.take_number("sid", service.sid, true);
    keys.take_number("ecc", service.ecc, false);
    keys.take_number("scids", service.scids, false);
}

void take_clock_text(call_keys& keys, const char* key, std::size_t digits, std::string& to) {
    const std::string* text = keys.take_text(key, true);
    if (text == nullptr) return;
    to = *text;
    // Only a text of the right length is ever converted.
    if (text->size() != digits) return;
    if (std::all_of(text->begin(), text->end(), [](char c) { return c >= '0' && c <= '9'; })) return;
    keys.error(std::string(key) + " " + in_quotes(*text) + " cannot be converted: it must be " +
               std::to_string(digits) + " digits, " + (digits == 8 ? "YYYYMMDD" : "HHMM"));
}

std::shared_ptr<const bytes> take_body(call_keys& keys, body_files& files) {
    const std::string* file = keys.take_text("file", false);
    const std::string* body = keys.take_text("body", false);
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
        keys.error("body is not base64: " + decoded.error);
    } else if (decoded.data.size() > std::numeric_limits<std::uint32_t>::max()) {
        keys.error("body is longer than the longest body of 4294967295 bytes");
    }
    return std::make_shared<const bytes>(std::move(decoded.data));
}

set_date_time take_set_date_time(call_keys& keys) {
    set_date_time call;
    take_clock_text(keys, "date", 8, call.date);
    take_clock_text(keys, "time", 4, call.time);
    return call;
}

set_current_service take_set_current_service(call_keys& keys) {
    set_current_service call;
    take_service(keys, call.service);
    keys.take_number("ensemble", call.ensemble, true);
    return call;
}

feed_mot_body take_feed_mot_body(call_keys& keys, body_files& files) {
    feed_mot_body call;
    keys.take_number("content_type", call.content_type, true);
    keys.take_number("content_subtype", call.content_subtype, true);
    if (const std::string* name = keys.take_text("content_name", true)) call.content_name = *name;
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
    call_keys keys(object, what, result.errors);
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
    keys.refuse_others();
    if (!result.errors.empty()) result.what.reset();
    return result;
}

}  // namespace dabspi

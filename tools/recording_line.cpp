#include "tools/recording_line.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <set>

#include "tools/base64.h"
#include "tools/utf8.h"

namespace dabspi {

namespace {

using nlohmann::json;

std::string value_text(const json& value) {
    if (value.is_string()) return in_quotes(value.get_ref<const std::string&>());
    if (value.is_structured()) return value.is_array() ? "an array" : "an object";
    return value.dump();
}

// A number's value; nothing if the text is not a number at all. Beyond 64 bits it stays at the largest value,
// which is out of every field's range.
std::optional<std::uint64_t> number_of_text(std::string_view text) {
    unsigned base = 10;
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        base = 16;
        text.remove_prefix(2);
    }
    if (text.empty()) return std::nullopt;
    constexpr auto most = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t value = 0;
    for (const char c : text) {
        unsigned digit = base;
        if (c >= '0' && c <= '9') digit = static_cast<unsigned>(c - '0');
        if (c >= 'a' && c <= 'f') digit = static_cast<unsigned>(c - 'a') + 10;
        if (c >= 'A' && c <= 'F') digit = static_cast<unsigned>(c - 'A') + 10;
        if (digit >= base) return std::nullopt;
        value = value > (most - digit) / base ? most : value * base + digit;
    }
    return value;
}

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
        constexpr std::uint64_t most = std::numeric_limits<Unsigned>::max();
        const std::string range = " is out of range (0 to " + std::to_string(most) + ")";
        std::optional<std::uint64_t> number;
        bool in_range = true;
        if (value->is_number_unsigned()) {
            number = value->get<std::uint64_t>();
        } else if (value->is_number_integer()) {
            in_range = false;  // negative
        } else if (value->is_number_float()) {
            // 7.0 and 1e2 are whole numbers; one too large for an integer is read as a float as well.
            const auto real = value->get<double>();
            in_range = real >= 0 && real <= static_cast<double>(most);
            if (in_range && real == std::floor(real)) number = static_cast<std::uint64_t>(real);
        } else if (value->is_string()) {
            number = number_of_text(value->get_ref<const std::string&>());
        }
        in_range = in_range && (!number || *number <= most);
        if (!in_range) {
            error(std::string(key) + " " + value_text(*value) + range);
        } else if (!number) {
            error(std::string(key) + " is " + value_text(*value) +
                  "; a whole number is needed, or its text in decimal or with 0x in hexadecimal");
        } else {
            to = static_cast<Unsigned>(*number);
        }
    }

    // Null if the key is missing or its value is not a text; the error is noted.
    const std::string* take_text(const char* key, bool required) {
        const json* value = find(key, required);
        if (value == nullptr) return nullptr;
        if (value->is_string()) return value->get_ptr<const std::string*>();
        error(std::string(key) + " is " + value_text(*value) + "; a text is needed");
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

// The JSON library's own wording without its preamble, and without the half line that it may quote.
std::string parse_error_text(const json::exception& error) {
    std::string what = error.what();
    auto start = what.find("column ");
    if (start == std::string::npos) start = what.find("] ") + 2;
    what.erase(0, start);
    const auto last_read = what.find("; last read: ");
    if (last_read != std::string::npos && what.size() - last_read > 80) what.resize(last_read);
    return "this is not JSON: " + printable(what);
}

}  // namespace

recording_line read_recording_line(std::string_view line, body_files& files) {
    recording_line result;
    std::set<std::string> seen;
    const auto note_duplicates = [&](int depth, json::parse_event_t event, json& parsed) {
        if (event != json::parse_event_t::key || depth != 1) return true;
        const auto& key = parsed.get_ref<const std::string&>();
        if (!seen.insert(key).second) result.errors.push_back("the key " + in_quotes(key) + " stands twice");
        return true;
    };

    json object;
    try {
        object = json::parse(line.begin(), line.end(), note_duplicates);
    } catch (const json::exception& error) {  // also a number beyond all bounds
        result.errors.assign(1, parse_error_text(error));
        return result;
    }
    if (!object.is_object()) {
        result.errors.push_back("a line must hold one JSON object, such as {\"call\":\"SetDateTime\",...}");
        return result;
    }
    const auto name = object.find("call");
    if (name == object.end() || !name->is_string()) {
        result.errors.push_back(name == object.end() ? "the key \"call\" is missing"
                                                     : "call is " + value_text(*name) + "; a text is needed");
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

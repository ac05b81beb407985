#include "tools/recording/json_keys.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "tools/recording/json_values.h"
#include "tools/text/utf8.h"

namespace dabspi {

json_keys::json_keys(const nlohmann::json& object, std::string what, reporter report)
    : object_(object.is_object() ? &object : nullptr), what_(std::move(what)), report_(std::move(report)) {}

bool json_keys::has(const char* key) const {
    return object_ != nullptr && object_->contains(key);
}

const nlohmann::json* json_keys::find(const char* key, bool needed) {
    if (std::find(asked_.begin(), asked_.end(), key) == asked_.end()) asked_.emplace_back(key);
    if (object_ == nullptr) return nullptr;
    const auto found = object_->find(key);
    if (found != object_->end()) return &*found;
    if (needed) error(what_ + " needs the key \"" + key + "\"");
    return nullptr;
}

const std::string* json_keys::text(const char* key, bool needed) {
    const nlohmann::json* const value = find(key, needed);
    if (value == nullptr) return nullptr;
    if (value->is_string()) return value->get_ptr<const std::string*>();
    error_at(key, "is " + json_text(*value) + "; a text is needed");
    return nullptr;
}

const nlohmann::json* json_keys::array(const char* key, bool needed) {
    const nlohmann::json* const value = find(key, needed);
    if (value == nullptr || value->is_array()) return value;
    error_at(key, "is " + json_text(*value) + "; an array is needed: [...]");
    return nullptr;
}

const nlohmann::json* json_keys::object(const char* key, bool needed) {
    const nlohmann::json* const value = find(key, needed);
    if (value == nullptr || value->is_object()) return value;
    error_at(key, "is " + json_text(*value) + "; an object is needed: {...}");
    return nullptr;
}

bool json_keys::flag(const char* key) {
    const nlohmann::json* const value = find(key);
    if (value == nullptr) return false;
    if (value->is_boolean()) return value->get<bool>();
    error_at(key, "is " + json_text(*value) + "; true or false is needed");
    return false;
}

std::string json_keys::lines(const char* key) {
    const nlohmann::json* const value = find(key);
    if (value == nullptr) return {};
    if (value->is_string()) return value->get<std::string>();
    std::string text;
    bool good = value->is_array();
    if (good) {
        for (const nlohmann::json& line : *value) {
            good = good && line.is_string();
            if (good) text += (text.empty() ? "" : "\n") + line.get<std::string>();
        }
    }
    if (!good) error_at(key, "is " + json_text(*value) + "; a text or an array of lines is needed");
    return text;
}

bool json_keys::number_up_to(const char* key, std::uint64_t most, std::uint64_t& to, bool needed) {
    const nlohmann::json* const value = find(key, needed);
    if (value == nullptr) return false;
    const whole_number read = read_whole_number(*value, most);
    if (!read.error.empty()) {
        error_at(key, read.error);
        return false;
    }
    to = read.value;
    return true;
}

void json_keys::refuse_others(const char* other) {
    if (object_ == nullptr) return;
    for (const auto& [key, value] : object_->items()) {
        if (key == other || std::find(asked_.begin(), asked_.end(), key) != asked_.end()) continue;
        std::string text = "unknown key " + in_quotes(key) + "; " + what_ + " takes ";
        if (asked_.empty()) text += "none";
        for (const std::string& known : asked_)
            text += (&known == &asked_.front() ? "" : ", ") + known;
        error(text);
    }
}

}  // namespace dabspi

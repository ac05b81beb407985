#include "tools/record/plan_keys.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "tools/recording/json_reader.h"
#include "tools/recording/json_values.h"
#include "tools/text/utf8.h"

namespace dabspi {

using nlohmann::json;

plan_keys::plan_keys(const json& object, std::string where, std::string what, std::vector<plan_error>& errors)
    : object_(object.is_object() ? &object : nullptr),
      where_(std::move(where)),
      what_(std::move(what)),
      errors_(errors) {
    if (object_ == nullptr)
        errors_.push_back({where_, "is " + json_text(object) + "; " + what_ + " is an object: {...}"});
}

std::string plan_keys::at(const std::string& key) const {
    return where_ + "/" + pointer_part(key);
}

const json* plan_keys::find(const char* key, bool needed) {
    if (std::find(asked_.begin(), asked_.end(), key) == asked_.end()) asked_.emplace_back(key);
    if (object_ == nullptr) return nullptr;
    const auto found = object_->find(key);
    if (found != object_->end()) return &*found;
    if (needed) error(what_ + " needs the key \"" + key + "\"");
    return nullptr;
}

const std::string* plan_keys::text(const char* key, bool needed) {
    const json* const value = find(key, needed);
    if (value == nullptr) return nullptr;
    if (value->is_string()) return value->get_ptr<const std::string*>();
    error_at(key, "is " + json_text(*value) + "; a text is needed");
    return nullptr;
}

const json* plan_keys::array(const char* key, bool needed) {
    const json* const value = find(key, needed);
    if (value == nullptr || value->is_array()) return value;
    error_at(key, "is " + json_text(*value) + "; an array is needed: [...]");
    return nullptr;
}

const json* plan_keys::object(const char* key, bool needed) {
    const json* const value = find(key, needed);
    if (value == nullptr || value->is_object()) return value;
    error_at(key, "is " + json_text(*value) + "; an object is needed: {...}");
    return nullptr;
}

bool plan_keys::flag(const char* key) {
    const json* const value = find(key);
    if (value == nullptr) return false;
    if (value->is_boolean()) return value->get<bool>();
    error_at(key, "is " + json_text(*value) + "; true or false is needed");
    return false;
}

std::string plan_keys::lines(const char* key) {
    const json* const value = find(key);
    if (value == nullptr) return {};
    if (value->is_string()) return value->get<std::string>();
    std::string text;
    bool good = value->is_array();
    if (good) {
        for (const json& line : *value) {
            good = good && line.is_string();
            if (good) text += (text.empty() ? "" : "\n") + line.get<std::string>();
        }
    }
    if (!good) error_at(key, "is " + json_text(*value) + "; a text or an array of lines is needed");
    return text;
}

bool plan_keys::number_up_to(const char* key, std::uint64_t most, std::uint64_t& to, bool needed) {
    const json* const value = find(key, needed);
    if (value == nullptr) return false;
    const whole_number read = read_whole_number(*value, most);
    if (!read.error.empty()) {
        error_at(key, read.error);
        return false;
    }
    to = read.value;
    return true;
}

void plan_keys::refuse_others() {
    if (object_ == nullptr) return;
    for (const auto& [key, value] : object_->items()) {
        if (std::find(asked_.begin(), asked_.end(), key) != asked_.end()) continue;
        std::string text = "unknown key " + in_quotes(key) + "; " + what_ + " takes ";
        for (const std::string& known : asked_)
            text += (&known == &asked_.front() ? "" : ", ") + known;
        error(text);
    }
}

}  // namespace dabspi

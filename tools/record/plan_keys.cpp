#include "tools/record/plan_keys.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "tools/recording/json_reader.h"
#include "tools/recording/json_values.h"

namespace dabspi {

plan_keys::plan_keys(const nlohmann::json& object, std::string where, const std::string& what,
                     std::vector<plan_error>& errors)
    : json_keys(object, what,
                [this](const std::string& key, const std::string& text) {
                    errors_.push_back({key.empty() ? where_ : at(key), text});
                }),
      where_(std::move(where)),
      errors_(errors) {
    if (!object.is_object()) error("is " + json_text(object) + "; " + what + " is an object: {...}");
}

std::string plan_keys::at(const std::string& key) const {
    return where_ + "/" + pointer_part(key);
}

}  // namespace dabspi

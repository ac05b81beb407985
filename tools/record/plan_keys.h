// The keys of one JSON object of a plan; what is wrong is noted with its place, as a JSON pointer (RFC 6901).
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "tools/recording/json_keys.h"

namespace dabspi {

struct plan_error {
    std::string where;  // "/steps/3/at"; empty: the plan as a whole
    std::string text;
};

class plan_keys : public json_keys {
 public:
    // `what` names the object in messages: "a step". Anything but an object is an error.
    plan_keys(const nlohmann::json& object, std::string where, const std::string& what,
              std::vector<plan_error>& errors);
    plan_keys(const plan_keys&) = delete;
    plan_keys& operator=(const plan_keys&) = delete;

    std::string at(const std::string& key) const;
    const std::string& where() const { return where_; }
    std::vector<plan_error>& errors() { return errors_; }

 private:
    std::string where_;
    std::vector<plan_error>& errors_;
};

}  // namespace dabspi

// Parts of a plan: objects to send, and the data services that carry them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/record/plan.h"

namespace dabspi {

constexpr int kMostDays = 366;  // that objects are sent ahead, or afterwards

// A number, whose top byte is the ECC if it has 32 bits, or sid, ecc and scids by themselves. Nothing when
// the key is not there.
std::optional<service_id> take_data_service(plan_keys& keys, const char* key);

// `where` is its place in the plan. What is wrong is added to `errors`.
planned_object take_object(const nlohmann::json& from, const std::string& where,
                           std::vector<plan_error>& errors);

}  // namespace dabspi

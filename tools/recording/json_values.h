// Values in JSON that people write: recordings, plans.
#pragma once

#include <cstdint>
#include <exception>
#include <nlohmann/json_fwd.hpp>
#include <string>

namespace dabspi {

struct whole_number {
    std::uint64_t value = 0;
    std::string error;  // "is \"x\"; a whole number is needed, ..."; empty: `value` was read
};

// A number from 0 to `most`, or its text in decimal or with 0x in hexadecimal.
whole_number read_whole_number(const nlohmann::json& value, std::uint64_t most);

// A value in a message: texts in quotes, arrays and objects by that name alone.
std::string json_text(const nlohmann::json& value);

// What is wrong with a text that is no JSON, in the JSON library's words: "this is not JSON: column 3: ...".
// With several lines, "line 2, column 3: ...".
std::string json_error_text(const std::exception& error, bool with_line);

}  // namespace dabspi

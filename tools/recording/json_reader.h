// JSON that strangers may have written, read in linear time: what is bounded is said, and keys that stand
// twice are reported, as a person meant both and a JSON library takes the last.
//
// The JSON library's own way to notice such keys (a callback) looks through every container again when an
// element in it ends: an array of a hundred thousand arrays costs minutes.
#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace dabspi {

struct json_limits {
    std::size_t most_depth = 32;        // containers in one another
    std::size_t most_values = 1000000;  // values and keys that are kept
    // Containers below this depth are read and not kept: an empty one stands there. 1 keeps the values of the
    // top one alone.
    std::size_t kept_depth = 32;
};

struct read_json_text {
    nlohmann::json value;
    std::vector<std::string> twice;  // keys, as JSON pointers (RFC 6901); the first hundred
    std::string error;               // empty: `value` was read; else as json_error_text says it
};

// `with_line`: errors name the line as well.
read_json_text read_json(std::string_view text, const json_limits& limits, bool with_line);

// A key or index as a part of a JSON pointer.
std::string pointer_part(const std::string& key);

}  // namespace dabspi

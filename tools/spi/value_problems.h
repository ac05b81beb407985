// Short words for the decoders: problems of values.
#pragma once

#include <string>
#include <vector>

#include "tools/spi/byte_view.h"
#include "tools/spi/problem.h"

namespace dabspi::spi_object {

inline void note(std::vector<problem>& problems, problem_code code, std::size_t at, std::string text,
                 std::string receiver = {}) {
    problems.push_back({code, static_cast<std::uint32_t>(at), std::move(text), std::move(receiver)});
}

inline std::string count_of(std::size_t count, const char* thing) {
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

// Says so when there are fewer or more than `wanted` bytes. False when there are fewer.
inline bool check_size(byte_view from, std::size_t wanted, std::vector<problem>& problems,
                       const std::string& receiver_if_short, const std::string& receiver_if_long) {
    if (from.size() < wanted) {
        note(problems, problem_code::value_too_short, from.size(),
             "the value needs " + count_of(wanted, "byte") + " and has " + std::to_string(from.size()),
             receiver_if_short);
        return false;
    }
    if (from.size() > wanted) {
        note(problems, problem_code::value_too_long, wanted,
             "the value takes " + count_of(wanted, "byte") + " and has " + std::to_string(from.size()),
             receiver_if_long);
    }
    return true;
}

// Decimal digits, all of them; false for an empty text or more than nine digits.
bool parse_digits(std::string_view text, unsigned& value);
// Hexadecimal digits, all of them, at most eight.
bool parse_hex(std::string_view text, std::uint32_t& value);

}  // namespace dabspi::spi_object

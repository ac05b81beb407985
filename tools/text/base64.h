// Base64 (RFC 4648, section 4) as recordings carry it: the standard alphabet, padded, without blanks or line
// breaks. Strict: what no encoder writes is refused, since a mistyped body would otherwise be fed as
// something else.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace dabspi {

struct base64_result {
    std::vector<std::uint8_t> data;
    std::string error;  // empty: decoded; else what is wrong, and `data` is empty
};

base64_result decode_base64(std::string_view text);

std::string encode_base64(const std::vector<std::uint8_t>& data);

}  // namespace dabspi

#include "tools/text/base64.h"

#include <algorithm>
#include <cstddef>

#include "tools/text/utf8.h"

namespace dabspi {

namespace {

base64_result refused(std::string why) {
    return {{}, std::move(why)};
}

// The six bits of one character; 64 for a character outside the alphabet.
unsigned sextet(char c) {
    if (c >= 'A' && c <= 'Z') return static_cast<unsigned>(c - 'A');
    if (c >= 'a' && c <= 'z') return static_cast<unsigned>(c - 'a') + 26;
    if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0') + 52;
    if (c == '+') return 62;
    if (c == '/') return 63;
    return 64;
}

}  // namespace

base64_result decode_base64(std::string_view text) {
    std::size_t digits = text.size();
    while (digits > 0 && text.size() - digits < 2 && text[digits - 1] == '=')
        --digits;
    for (std::size_t i = 0; i < digits; ++i) {
        if (sextet(text[i]) < 64) continue;
        const std::string_view rest = text.substr(i);
        return refused("character " + std::to_string(i + 1) + " is " +
                       in_quotes(rest.substr(0, first_utf8_part(rest).length)) +
                       ", which is not in the standard alphabet");
    }
    if (text.size() % 4 != 0)
        return refused("its length is " + std::to_string(text.size()) +
                       ", not a multiple of 4; pad it with \"=\"");

    base64_result result;
    result.data.reserve(text.size() / 4 * 3);
    unsigned bits = 0;
    unsigned count = 0;  // bits held that are not yet a byte
    for (std::size_t i = 0; i < digits; ++i) {
        bits = (bits << 6) | sextet(text[i]);
        count += 6;
        if (count >= 8) {
            count -= 8;
            result.data.push_back(static_cast<std::uint8_t>(bits >> count));
        }
        bits &= (1u << count) - 1;
    }
    if (bits != 0) return refused("its last character holds bits beyond the last byte");
    return result;
}

std::string encode_base64(const std::vector<std::uint8_t>& data) {
    constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((data.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < data.size(); i += 3) {
        const std::size_t here = std::min<std::size_t>(3, data.size() - i);
        std::uint32_t group = 0;
        for (std::size_t k = 0; k < 3; ++k)
            group = group << 8 | (k < here ? data[i + k] : 0u);
        for (std::size_t k = 0; k < 4; ++k)
            text += k <= here ? kAlphabet[group >> (18 - 6 * k) & 0x3F] : '=';
    }
    return text;
}

}  // namespace dabspi

#include "tools/base64.h"

#include <cstddef>

#include "tools/utf8.h"

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
    static constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((data.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < data.size(); i += 3) {
        unsigned bits = 0;
        for (std::size_t j = i; j < i + 3; ++j)
            bits = bits << 8 | (j < data.size() ? data[j] : 0U);
        for (std::size_t j = 0; j < 4; ++j)
            text += i + j > data.size() ? '=' : alphabet[bits >> (18 - 6 * j) & 63];
    }
    return text;
}

}  // namespace dabspi

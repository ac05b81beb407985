// Texts of a broadcast in other character sets than UTF-8. Pure functions, any thread; every byte is a
// character, so there is no bad input on the way to UTF-8.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace dabspi {

void append_utf8(std::string& to, char32_t code_point);

// The complete EBU Latin based repertoire (ETSI TS 101 756, annex C). Its control characters (0x00, 0x0A,
// 0x0B, 0x1F) stay what they are.
std::string ebu_latin_to_utf8(std::string_view text);

std::string iso_8859_1_to_utf8(std::string_view text);

// The other way. Nothing when a character is none of the set's, or the text is no UTF-8.
std::optional<std::string> utf8_to_ebu_latin(std::string_view text);
std::optional<std::string> utf8_to_iso_8859_1(std::string_view text);

}  // namespace dabspi

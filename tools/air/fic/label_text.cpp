#include "tools/air/fic/label_text.h"

#include <algorithm>

#include "tools/text/ebu_latin.h"
#include "tools/text/utf8.h"

namespace dabspi::air {

namespace {

constexpr std::uint8_t kUtf16 = 6;
constexpr std::uint8_t kUtf8 = 15;
constexpr char32_t kReplacement = 0xFFFD;

std::string of_utf16(spi_object::byte_view from) {
    std::string text;
    for (std::size_t at = 0; at + 2 <= from.size(); at += 2) {
        char32_t unit = from.number(at, 2);
        if (unit == 0) break;
        const char32_t low = from.number(at + 2, 2);
        if (unit >= 0xD800 && unit < 0xDC00 && at + 4 <= from.size() && low >= 0xDC00 && low < 0xE000) {
            unit = 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
            at += 2;
        } else if (unit >= 0xD800 && unit < 0xE000) {
            unit = kReplacement;
        }
        append_utf8(text, unit);
    }
    return text;
}

}  // namespace

std::string label_text(std::uint8_t charset, spi_object::byte_view characters) {
    std::string text;
    if (charset == kUtf16) {
        text = of_utf16(characters);
    } else {
        std::string_view bytes = characters.text();
        bytes = bytes.substr(0, bytes.find('\0'));
        text = charset == kUtf8 ? std::string(bytes) : ebu_latin_to_utf8(bytes);
    }
    std::string result;
    for (std::string_view left = text; !left.empty();) {
        const utf8_part part = first_utf8_part(left);
        const char32_t character = part.well_formed ? part.code_point : kReplacement;
        if (character >= 0x20 && !(character >= 0x7F && character < 0xA0)) append_utf8(result, character);
        left.remove_prefix(part.length);
    }
    result.erase(result.find_last_not_of(' ') + 1);
    return result;
}

}  // namespace dabspi::air

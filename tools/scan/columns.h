// Texts in columns.
#pragma once

#include <string>

namespace dabspi::scan {

// Filled up with blanks to `width` characters; `text` is printable UTF-8.
inline std::string padded(const std::string& text, std::size_t width) {
    std::size_t characters = 0;
    for (const char c : text)
        characters += (static_cast<unsigned char>(c) & 0xC0) == 0x80 ? 0U : 1U;
    return text + std::string(characters < width ? width - characters : 0, ' ');
}

// The same with the blanks in front.
inline std::string right(const std::string& text, std::size_t width) {
    return std::string(text.size() < width ? width - text.size() : 0, ' ') + text;
}

// "12.3 s", "1:02:03"
std::string seconds_text(double seconds);

}  // namespace dabspi::scan

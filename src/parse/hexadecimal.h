// Numbers in hexadecimal, as file names and texts want them.
#pragma once

#include <cstdint>
#include <string>

namespace spi {

// No prefix; padded with zeros to `digits`. No stream: a name is made for every announcement, and a stream
// would ask the host's locale first.
inline void append_hexadecimal(std::string& text, std::uint32_t value, int digits = 1, bool upper = true) {
    int count = 8;
    while (count > digits && value >> (count - 1) * 4 == 0)
        --count;
    while (count-- > 0)
        text += (upper ? "0123456789ABCDEF" : "0123456789abcdef")[value >> count * 4 & 0xF];
}

inline std::string hexadecimal(std::uint32_t value, int digits = 1) {
    std::string text;
    append_hexadecimal(text, value, digits);
    return text;
}

}  // namespace spi

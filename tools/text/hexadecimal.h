// Numbers and bytes in hexadecimal, as texts and JSON have them.
#pragma once

#include <cstdint>
#include <string>

#include "src/parse/hexadecimal.h"

namespace dabspi {

// "0x1F", padded with zeros to `digits`.
inline std::string hexadecimal(std::uint32_t value, int digits = 1) {
    return "0x" + spi::hexadecimal(value, digits);
}

// "7f00", in lower case.
template <class Bytes>
std::string all_bytes(const Bytes& from) {
    std::string text;
    text.reserve(2 * from.size());
    for (const auto each : from)
        spi::append_hexadecimal(text, static_cast<std::uint8_t>(each), 2, false);
    return text;
}

}  // namespace dabspi

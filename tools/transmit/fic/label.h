// Labels (EN 300 401, 5.2.2.1) as they are sent. Pure functions, any thread.
#pragma once

#include <cstdint>
#include <string_view>

#include "tools/transmit/mot/parameters.h"

namespace dabspi::transmit {

// In EBU Latin where that has all characters, else in UTF-8; cut to 16 bytes at a character, the rest zeros.
struct label_field {
    std::uint8_t charset = 0;
    bytes characters;         // 16
    std::uint16_t flags = 0;  // the eight characters of the short label, the first of them at the top
};
label_field label_of(std::string_view text);

}  // namespace dabspi::transmit

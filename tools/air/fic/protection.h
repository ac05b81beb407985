// Size, protection and bit rate of a sub-channel, from either form of FIG 0/1 (EN 300 401, 6.2.1).
#pragma once

#include <cstdint>
#include <string>

#include "tools/air/fic/configuration.h"

namespace dabspi::air {

// Short form: an index into the table of unequal protection.
void set_unequal_protection(sub_channel& of, std::uint8_t index);
// Long form. Options other than 0 and 1 leave the bit rate unknown.
void set_equal_protection(sub_channel& of, std::uint8_t option, std::uint8_t level, std::uint16_t size);

// "UEP 3", "EEP 3-A"
std::string protection_text(const sub_channel& of);

}  // namespace dabspi::air

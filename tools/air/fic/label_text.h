// Labels of ensembles, services and components (EN 300 401, 5.2.2.2): 16 bytes in one of three character
// sets, filled up with zeros or blanks. Pure.
#pragma once

#include <cstdint>
#include <string>

#include "tools/spi/byte_view.h"

namespace dabspi::air {

// Well-formed UTF-8 without the filling and without control characters. `charset`: 6 UTF-16, 15 UTF-8, any
// other the EBU Latin repertoire.
std::string label_text(std::uint8_t charset, spi_object::byte_view characters);

}  // namespace dabspi::air

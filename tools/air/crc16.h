// The CRC of broadcast frames, FIBs, packets, data groups and EDI packets (EN 300 401, annex E): polynomial
// 0x1021, begun with 0xFFFF, complemented, most significant byte first. Pure functions, any thread.
#pragma once

#include <cstdint>

#include "tools/spi/byte_view.h"

namespace dabspi::air {

using spi_object::byte_view;

// As it is sent behind `of`. Of "123456789": 0xD64E.
std::uint16_t crc16(byte_view of);

// Are the last two bytes the CRC of those in front of them? False for fewer than two.
bool ends_with_crc16(byte_view all);

}  // namespace dabspi::air

// CRC and Reed-Solomon parity for what the tests send, computed in the plainest way: bit by bit, and by
// division of polynomials. Shares no line with what reads them.
#pragma once

#include <cstdint>
#include <vector>

namespace multiplex_builder {

using bytes = std::vector<std::uint8_t>;

// EN 300 401, annex E.
std::uint16_t crc16(const bytes& of);
bytes with_crc16(bytes of);

// `count` parity bytes behind `data`, over the field 0x11D, with the roots a^first, a^(first + 1), ...
bytes reed_solomon_parity(const bytes& data, unsigned count, unsigned first);

}  // namespace multiplex_builder

// Unpacks what was compressed with gzip (RFC 1952) or zlib (RFC 1950), told apart by their beginning. A pure
// function, any thread. Work and memory are bounded by the input and `limit`.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tools/spi/byte_view.h"

namespace dabspi::air {

using spi_object::byte_view;

enum class unpack_fault : std::uint8_t {
    none,
    damaged,   // no such file, cut off, or a wrong checksum
    too_large  // more than `limit` bytes
};

// Several gzip files one after another are one. `to` is filled only if there is no fault.
unpack_fault unpack(byte_view packed, std::size_t limit, std::vector<std::uint8_t>& to);

}  // namespace dabspi::air

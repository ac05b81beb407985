// Packs bytes as a gzip file (RFC 1952) without name and time: equal bytes give equal files. A pure function.
#pragma once

#include "tools/spi/byte_view.h"

namespace dabspi::transmit {

spi_object::bytes gzip(spi_object::byte_view of);

}  // namespace dabspi::transmit

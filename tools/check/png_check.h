// Whether an image is a PNG that can be shown, by decoding it as a whole (libpng).
#pragma once

#include <cstdint>
#include <string>

#include "tools/spi/byte_view.h"

namespace dabspi::check {

struct png_verdict {
    bool good = false;
    std::string fault;        // of one that is not good: "it is a JPEG image", "IDAT: CRC error"
    std::uint32_t width = 0;  // pixels; 0 when they cannot be told
    std::uint32_t height = 0;
};

png_verdict check_png(spi_object::byte_view body);

}  // namespace dabspi::check

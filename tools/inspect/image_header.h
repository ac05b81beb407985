// What kind of image a MOT body is, by its own first bytes, and how large it says it is. Any bytes will do.
#pragma once

#include <cstdint>
#include <optional>

#include "tools/spi/byte_view.h"

namespace dabspi {

struct image_header {
    const char* kind;         // "PNG", "JPEG", "GIF", "BMP"
    std::uint32_t width = 0;  // pixels; both 0 when the header does not tell
    std::uint32_t height = 0;
};

// Nothing for bytes that are no image of these kinds.
std::optional<image_header> read_image_header(spi_object::byte_view body);

// The ContentSubType that such an image has in MOT.
std::uint16_t mot_subtype(const image_header& image);

}  // namespace dabspi

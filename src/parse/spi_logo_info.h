// One station logo: first as announced by service information, then as written to a file.
#pragma once

#include <cstdint>
#include <string>

#include "src/parse/serv_elem_id.h"

namespace spi {

// What a logo's announcement says of its format. Only PNG is written.
enum logo_format : std::uint8_t {
    LOGO_FORMAT_UNKNOWN = 0,
    LOGO_FORMAT_JPEG = 1,
    LOGO_FORMAT_PNG = 2,
};

// What a logo's announcement says of its size, in pixels. Only 3 and 4 are written.
enum logo_size : std::uint8_t {
    LOGO_SIZE_UNKNOWN = 0,  // no dimension was announced
    LOGO_SIZE_32x32 = 1,
    LOGO_SIZE_112x32 = 2,
    LOGO_SIZE_128x128 = 3,
    LOGO_SIZE_320x240 = 4,
    LOGO_SIZE_600x600 = 5,
    LOGO_SIZE_OTHER = 6,  // none of these
};

struct SpiLogoInfo {
    ServElemId service;                               // the station
    std::uint8_t image_format = LOGO_FORMAT_UNKNOWN;  // a logo_format
    std::uint8_t size_code = LOGO_SIZE_UNKNOWN;       // a logo_size
    // In an announcement the MOT content name of the image; in what the listener gets the logo file's name
    // inside the logo root, without the directory.
    std::string name;
};

}  // namespace spi

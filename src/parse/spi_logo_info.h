// One station logo: first as announced by service information, then as written to a file.
#pragma once

#include <cstdint>
#include <string>

#include "src/parse/serv_elem_id.h"

namespace spi {

enum logo_format : std::uint8_t { LOGO_FORMAT_UNKNOWN = 0, LOGO_FORMAT_JPEG = 1, LOGO_FORMAT_PNG = 2 };

enum logo_size : std::uint8_t {
    LOGO_SIZE_UNKNOWN = 0,
    LOGO_SIZE_32x32 = 1,
    LOGO_SIZE_112x32 = 2,
    LOGO_SIZE_128x128 = 3,
    LOGO_SIZE_320x240 = 4,
    LOGO_SIZE_600x600 = 5,
    LOGO_SIZE_OTHER = 6,
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

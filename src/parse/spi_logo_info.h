// One station logo: first as announced by service information, then as written to a file.
#pragma once

#include <cstdint>
#include <string>

#include "src/parse/serv_elem_id.h"

namespace spi {

struct SpiLogoInfo {
    ServElemId service;             // the station
    std::uint8_t image_format = 0;  // 0 unknown, 1 JPEG, 2 PNG
    // 0 no size known, 1 32x32, 2 112x32, 3 128x128, 4 320x240, 5 600x600, 6 any other
    std::uint8_t size_code = 0;
    // In an announcement the MOT content name of the image; in what the listener gets the logo file's name
    // inside the logo root, without the directory.
    std::string name;
};

}  // namespace spi

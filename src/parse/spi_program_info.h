// One programme as the listener hears of it.
#pragma once

#include <cstdint>
#include <string>

#include "src/parse/mot_date_time.h"

namespace spi {

struct SpiProgramInfo {
    MotDateTime start;           // local time; an unset programme reads 1859-255-19 00:00
    std::uint16_t duration = 0;  // whole minutes, rounded down
    std::string name;            // the broadcast's bytes, normally UTF-8
};

}  // namespace spi

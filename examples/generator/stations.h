// The invented stations: who they are, what they broadcast on a day, how their logos look. No station,
// programme or picture here belongs to anybody.
#pragma once

#include <string>
#include <vector>

#include "examples/generator/canvas.h"
#include "tests/support/spi_builder_objects.h"

namespace generator {

// One programme of a station's day, in local time. In names, "%" stands for the day's theme.
struct slot {
    const char* from;         // "HHMM"
    const char* medium_name;  // may be empty
    const char* long_name;    // may be empty
    unsigned minutes = 0;     // 0: until the next slot begins, the last one until midnight
};

struct station {
    spi_builder::service_id id;
    const char* file_stem;  // begins the names of its files
    spi_builder::names name;
    logo_design logo;
    std::vector<slot> day;
    spi_builder::tokens tokens = {};  // what its programme objects define
    bool jpeg_logos = false;          // announces and sends JPEG instead of PNG
    bool oversize_logo = false;       // sends a 320 x 240 logo that is too large to be kept
    bool all_sizes = false;           // announces and sends the three sizes that are never kept, too
};

const std::vector<station>& home_stations();   // twelve, on the home ensemble
const std::vector<station>& other_stations();  // three, on the other ensemble

// The station with this service identifier; std::logic_error if there is none.
const station& station_of(const spi_builder::service_id& id);

// Its programmes of a day (Modified Julian Date), coded with a local time offset of one hour.
std::vector<spi_builder::programme_data> programmes_of(const station& which, std::uint32_t day);

// "quillhaven-128x128.png"
std::string picture_name(const station& which, int width, int height);

// A PNG of 320 x 240 that is larger than any logo may be.
spi_builder::bytes oversize_png();

}  // namespace generator

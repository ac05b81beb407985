#include "examples/generator/stations.h"

#include <array>
#include <stdexcept>

#include "examples/generator/image_files.h"

namespace generator {

using namespace spi_builder;

namespace {

constexpr unsigned day_minutes = 1440;
constexpr int one_hour_east = 2;  // half-hours

unsigned minute_of(const char* time) {
    const unsigned digits = static_cast<unsigned>(std::stoul(time));
    return digits / 100 * 60 + digits % 100;
}

std::string with_theme(const char* name, std::uint32_t day) {
    static constexpr std::array<const char*, 3> themes = {"the North Shore", "Salt and Iron", "Old Maps"};
    std::string out = name;
    const std::size_t place = out.find('%');
    if (place != std::string::npos) out.replace(place, 1, themes[day % themes.size()]);
    return out;
}

}  // namespace

const station& station_of(const service_id& id) {
    for (const auto* group : {&home_stations(), &other_stations()}) {
        for (const station& one : *group) {
            if (one.id.sid == id.sid) return one;
        }
    }
    throw std::logic_error("no station with this service identifier");
}

std::vector<programme_data> programmes_of(const station& which, std::uint32_t day) {
    std::vector<programme_data> out;
    for (std::size_t i = 0; i < which.day.size(); ++i) {
        const slot& here = which.day[i];
        const unsigned from = minute_of(here.from);
        const unsigned next = i + 1 < which.day.size() ? minute_of(which.day[i + 1].from) : day_minutes;
        programme_data one;
        one.short_id = which.id.sid << 8 | static_cast<std::uint32_t>(i + 1);
        one.name.medium_name = with_theme(here.medium_name, day);
        one.name.long_name = with_theme(here.long_name, day);
        one.start = local_time(day, from / 60, from % 60, one_hour_east);
        one.duration = static_cast<std::uint16_t>((here.minutes != 0 ? here.minutes : next - from) * 60);
        out.push_back(one);
    }
    return out;
}

std::string picture_name(const station& which, int width, int height) {
    return std::string(which.file_stem) + '-' + std::to_string(width) + 'x' + std::to_string(height) +
           (which.jpeg_logos ? ".jpg" : ".png");
}

bytes oversize_png() {
    std::vector<rgb> greys;
    for (unsigned i = 0; i < 16; ++i) {
        const auto level = static_cast<std::uint8_t>(i * 17);
        greys.push_back({level, level, static_cast<std::uint8_t>(255 - level)});
    }
    // Noise does not compress: half a byte a pixel is more than a logo may have. A fixed linear congruential
    // sequence.
    canvas picture(320, 240, greys);
    std::uint32_t state = 20260310;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            state = state * 1664525U + 1013904223U;
            picture.set(x, y, static_cast<std::uint8_t>(state >> 28));
        }
    }
    return png_file(picture);
}

}  // namespace generator

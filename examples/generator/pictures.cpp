#include "examples/generator/pictures.h"

#include <string>
#include <vector>

#include "examples/generator/canvas.h"
#include "examples/generator/image_files.h"

namespace generator {

using spi_builder::bytes;

namespace {

constexpr rgb navy = {16, 32, 80};
constexpr rgb teal = {0, 120, 128};
constexpr rgb wine = {120, 16, 48};
constexpr rgb moss = {48, 96, 32};
constexpr rgb sand = {232, 208, 152};
constexpr rgb amber = {240, 160, 16};
constexpr rgb sky = {96, 176, 232};
constexpr rgb coal = {32, 32, 36};
constexpr rgb chalk = {248, 248, 240};
constexpr rgb rust = {176, 72, 24};
constexpr rgb plum = {88, 40, 112};
constexpr rgb mint = {152, 224, 184};

struct size {
    int width;
    int height;
};

const std::vector<size> kept = {{128, 128}, {320, 240}};  // that a receiver keeps
const std::vector<size> all = {{128, 128}, {320, 240}, {32, 32}, {112, 32}, {600, 600}};

struct station {
    std::string name;  // begins the names of its files
    logo_design logo;
    std::vector<size> png = {};
    std::vector<size> jpeg = {};
};

const std::vector<station>& stations() {
    static const std::vector<station> table = {
        // The upright one and the JPEGs are for recordings of what receivers do not keep.
        {"quillhaven",
         {"Q1", pattern::columns, navy, teal, chalk},
         {{128, 128}, {320, 240}, {32, 32}, {112, 32}, {600, 600}, {240, 320}},
         kept},
        {"fennmark", {"FM", pattern::rows, moss, mint, chalk}, all},
        {"zwoelfklang", {"12", pattern::checks, wine, amber, chalk}, all},
        {"cafe-nocturne", {"CN", pattern::disc, coal, amber, chalk}, all},
        {"lanternfish", {"LT", pattern::plain, teal, teal, sand}, {}, kept},
        {"pine-copper", {"PC", pattern::diagonal, moss, rust, chalk}, kept},
        {"reka", {"RK", pattern::rings, navy, sky, chalk}, kept},
        {"tidepool", {"TJ", pattern::sunrise, plum, amber, chalk}, kept},
        {"kitestring", {"KK", pattern::diagonal, amber, sky, wine}, kept},
        {"anvilwood", {"AR", pattern::columns, coal, rust, chalk}, kept},
        {"blatimen",
         {"BT", pattern::rows, sky, navy, chalk},
         {{128, 128}}},  // its large one is the oversize one
        {"orbitale", {"ON", pattern::rings, coal, teal, chalk}, kept},
        {"gullmere", {"GM", pattern::sunrise, sky, sand, navy}, kept},
        {"saltpan", {"SP", pattern::checks, sand, rust, coal}, kept},
        {"oberlicht", {"OL", pattern::disc, chalk, sky, coal}, kept},
    };
    return table;
}

// "quillhaven-128x128.png"
std::string file_name(const station& of, const size& wanted, const char* ending) {
    return "objects/" + of.name + '-' + std::to_string(wanted.width) + 'x' + std::to_string(wanted.height) +
           ending;
}

// A PNG of 320 x 240 that is larger than any logo may be.
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

}  // namespace

void add_pictures(file_set& files) {
    constexpr int block = 8;  // pixels of a JPEG block
    for (const station& one : stations()) {
        for (const size& wanted : one.png)
            files.add(file_name(one, wanted, ".png"),
                      png_file(draw_logo(one.logo, wanted.width, wanted.height)));
        for (const size& wanted : one.jpeg)
            files.add(file_name(one, wanted, ".jpg"),
                      jfif_file(draw_logo(one.logo, wanted.width / block, wanted.height / block)));
    }
    files.add("objects/oversize-320x240.png", oversize_png());
}

}  // namespace generator

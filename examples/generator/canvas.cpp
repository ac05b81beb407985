#include "examples/generator/canvas.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace generator {

namespace {

constexpr int face_width = 5;
constexpr int face_height = 7;

struct glyph {
    char letter;
    const char* rows;  // seven rows of five dots
};

// clang-format off
constexpr glyph face[] = {
    {'1', "..#.." ".##.." "..#.." "..#.." "..#.." "..#.." ".###."},
    {'2', ".###." "#...#" "....#" "...#." "..#.." ".#..." "#####"},
    {'A', ".###." "#...#" "#...#" "#####" "#...#" "#...#" "#...#"},
    {'B', "####." "#...#" "#...#" "####." "#...#" "#...#" "####."},
    {'C', ".###." "#...#" "#...." "#...." "#...." "#...#" ".###."},
    {'F', "#####" "#...." "#...." "####." "#...." "#...." "#...."},
    {'G', ".###." "#...#" "#...." "#.###" "#...#" "#...#" ".###."},
    {'J', "..###" "...#." "...#." "...#." "...#." "#..#." ".##.."},
    {'K', "#...#" "#..#." "#.#.." "##..." "#.#.." "#..#." "#...#"},
    {'L', "#...." "#...." "#...." "#...." "#...." "#...." "#####"},
    {'M', "#...#" "##.##" "#.#.#" "#.#.#" "#...#" "#...#" "#...#"},
    {'N', "#...#" "##..#" "#.#.#" "#..##" "#...#" "#...#" "#...#"},
    {'O', ".###." "#...#" "#...#" "#...#" "#...#" "#...#" ".###."},
    {'P', "####." "#...#" "#...#" "####." "#...." "#...." "#...."},
    {'Q', ".###." "#...#" "#...#" "#...#" "#.#.#" "#..#." ".##.#"},
    {'R', "####." "#...#" "#...#" "####." "#.#.." "#..#." "#...#"},
    {'S', ".####" "#...." "#...." ".###." "....#" "....#" "####."},
    {'T', "#####" "..#.." "..#.." "..#.." "..#.." "..#.." "..#.."},
};
// clang-format on

const char* rows_of(char letter) {
    for (const glyph& one : face) {
        if (one.letter == letter) return one.rows;
    }
    throw std::logic_error("no such letter in the logo face");
}

// Whether the accent colour shows at a point; lengths are in sixteenths of the picture's height, so that a
// design looks alike in every size.
bool accent_at(pattern shape, int x, int y, int width, int height) {
    const int unit = std::max(1, height / 16);
    const int dx = x - width / 2;
    const int dy = y - height / 2;
    const int distance = dx * dx + dy * dy;
    switch (shape) {
        case pattern::plain: return false;
        case pattern::columns: return x / (2 * unit) % 2 == 0;
        case pattern::rows: return y / (2 * unit) % 2 == 0;
        case pattern::diagonal: return (x + y) / (3 * unit) % 2 == 0;
        case pattern::disc: return distance < 49 * unit * unit;
        case pattern::rings: return distance / (12 * unit * unit) % 2 == 0;
        case pattern::checks: return (x / (4 * unit) + y / (4 * unit)) % 2 == 0;
        case pattern::sunrise: return dx * dx + (y - height) * (y - height) < 100 * unit * unit;
    }
    return false;
}

}  // namespace

canvas::canvas(int width, int height, std::vector<rgb> palette)
    : width_(width),
      height_(height),
      palette_(std::move(palette)),
      pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {}

rgb canvas::colour_at(int x, int y) const {
    return palette_.at(pixels_.at(static_cast<std::size_t>(y * width_ + x)));
}

void canvas::set(int x, int y, std::uint8_t colour) {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) return;
    pixels_[static_cast<std::size_t>(y * width_ + x)] = colour;
}

void canvas::rectangle(int left, int top, int width, int height, std::uint8_t colour) {
    for (int y = top; y < top + height; ++y) {
        for (int x = left; x < left + width; ++x)
            set(x, y, colour);
    }
}

void canvas::monogram(std::string_view text, int scale, std::uint8_t colour) {
    const int advance = (face_width + 1) * scale;
    int left = (width_ - (static_cast<int>(text.size()) * advance - scale)) / 2;
    const int top = (height_ - face_height * scale) / 2;
    for (const char letter : text) {
        const char* rows = rows_of(letter);
        for (int dot = 0; dot < face_width * face_height; ++dot) {
            if (rows[dot] != '#') continue;
            rectangle(left + dot % face_width * scale, top + dot / face_width * scale, scale, scale, colour);
        }
        left += advance;
    }
}

canvas draw_logo(const logo_design& design, int width, int height) {
    canvas picture(width, height, {design.field, design.accent, design.ink});
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            if (accent_at(design.shape, x, y, width, height)) picture.set(x, y, 1);
        }
    }
    const int across = (face_width + 1) * static_cast<int>(design.letters.size());
    const int scale = std::max(1, std::min(width * 3 / 4 / across, height * 5 / 8 / face_height));
    picture.monogram(design.letters, scale, 2);
    return picture;
}

}  // namespace generator

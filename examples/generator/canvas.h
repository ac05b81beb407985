// A small picture in palette colours, and the few strokes that an invented station's logo is drawn with.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace generator {

struct rgb {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
};

class canvas {
 public:
    canvas(int width, int height, std::vector<rgb> palette);

    int width() const { return width_; }
    int height() const { return height_; }
    const std::vector<rgb>& palette() const { return palette_; }
    const std::vector<std::uint8_t>& pixels() const { return pixels_; }  // palette indices, row by row
    rgb colour_at(int x, int y) const;

    void set(int x, int y, std::uint8_t colour);  // outside the picture: nothing
    void rectangle(int left, int top, int width, int height, std::uint8_t colour);

    // Letters of a 5 x 7 face, `scale` pixels to a dot, centred in the picture. Known are the capitals and
    // digits that the stations' monograms use; any other character throws std::logic_error.
    void monogram(std::string_view text, int scale, std::uint8_t colour);

 private:
    int width_;
    int height_;
    std::vector<rgb> palette_;
    std::vector<std::uint8_t> pixels_;
};

enum class pattern { plain, columns, rows, diagonal, disc, rings, checks, sunrise };

// The design of one station, drawn to any size: field, pattern, monogram.
struct logo_design {
    std::string_view letters;
    pattern shape = pattern::plain;
    rgb field;
    rgb accent;
    rgb ink;
};

canvas draw_logo(const logo_design& design, int width, int height);

}  // namespace generator

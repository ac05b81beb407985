#include <cstdlib>

#include "examples/generator/image_files.h"

namespace generator {

using namespace spi_builder;

namespace {

bytes segment(std::uint8_t marker, const bytes& content) {
    return join({bytes{0xFF, marker}, u16(static_cast<std::uint32_t>(content.size() + 2)), content});
}

// Entropy-coded data: bits from the most significant one, a zero byte after each 0xFF, the last byte filled
// with ones.
class bit_writer {
 public:
    void put(unsigned value, unsigned count) {
        for (unsigned i = count; i > 0; --i) {
            byte_ = byte_ << 1 | (value >> (i - 1) & 1U);
            if (++filled_ == 8) flush();
        }
    }

    bytes finish() {
        while (filled_ != 0)
            put(1, 1);
        return out_;
    }

 private:
    void flush() {
        out_.push_back(static_cast<std::uint8_t>(byte_));
        if (out_.back() == 0xFF) out_.push_back(0);
        byte_ = 0;
        filled_ = 0;
    }

    unsigned byte_ = 0;
    unsigned filled_ = 0;
    bytes out_;
};

// One Huffman table serves the means of all three components: sizes 0 to 8 as 4-bit codes of the same value.
// The other coefficients are all zero: their table has one symbol, "end of block", with the code 0.
constexpr unsigned size_code_bits = 4;

void put_difference(bit_writer& out, int difference) {
    unsigned size = 0;
    while (std::abs(difference) >> size != 0)
        ++size;
    out.put(size, size_code_bits);
    const int coded = difference < 0 ? difference + (1 << size) - 1 : difference;
    out.put(static_cast<unsigned>(coded), size);
    out.put(0, 1);
}

struct components {
    int value[3];  // luminance and the two chrominances, each less 128
};

components convert(const rgb& colour) {
    const int r = colour.red;
    const int g = colour.green;
    const int b = colour.blue;
    return {{(299 * r + 587 * g + 114 * b) / 1000 - 128, (-169 * r - 331 * g + 500 * b) / 1000,
             (500 * r - 419 * g - 81 * b) / 1000}};
}

bytes huffman_table(std::uint8_t which, const bytes& counts, const bytes& symbols) {
    return segment(0xC4, join({u8(which), counts, bytes(16 - counts.size()), symbols}));
}

}  // namespace

bytes jfif_file(const canvas& picture) {
    // With every quantiser 8, a flat block's first coefficient is its value less 128.
    const bytes quantisers = bytes(64, 8);
    const bytes headers = join({
        bytes{0xFF, 0xD8},
        segment(0xE0, join({str(std::string_view("JFIF\0", 5)), u16(0x0102), u8(0), u16(1), u16(1), u16(0)})),
        segment(0xDB, join({u8(0), quantisers})),
        segment(0xC0, join({u8(8), u16(static_cast<std::uint32_t>(picture.height()) * 8),
                            u16(static_cast<std::uint32_t>(picture.width()) * 8), u8(3),
                            bytes{1, 0x11, 0, 2, 0x11, 0, 3, 0x11, 0}})),
        huffman_table(0x00, {0, 0, 0, 9}, {0, 1, 2, 3, 4, 5, 6, 7, 8}),
        huffman_table(0x10, {1}, {0}),
        segment(0xDA, {3, 1, 0x00, 2, 0x00, 3, 0x00, 0, 63, 0}),
    });

    bit_writer out;
    components before{};
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const components here = convert(picture.colour_at(x, y));
            for (int i = 0; i < 3; ++i)
                put_difference(out, here.value[i] - before.value[i]);
            before = here;
        }
    }
    return join({headers, out.finish(), bytes{0xFF, 0xD9}});
}

}  // namespace generator

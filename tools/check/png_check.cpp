#include "tools/check/png_check.h"

#include <png.h>

#include <cstring>
#include <vector>

#include "tools/inspect/image_header.h"
#include "tools/text/utf8.h"

namespace dabspi::check {

namespace {

constexpr std::uint64_t kMostPixels = 4096 * 4096;  // a logo has 76,800; more is not worth the memory

// Frees what libpng holds, whatever happens.
struct png_reader {
    png_reader() {
        std::memset(&image, 0, sizeof image);
        image.version = PNG_IMAGE_VERSION;
    }
    png_reader(const png_reader&) = delete;
    png_reader& operator=(const png_reader&) = delete;
    ~png_reader() { png_image_free(&image); }

    std::string message() const { return printable(image.message); }

    png_image image;
};

}  // namespace

png_verdict check_png(spi_object::byte_view body) {
    png_verdict verdict;
    const auto header = read_image_header(body);
    if (header) {
        verdict.width = header->width;
        verdict.height = header->height;
    }
    if (!header || std::strcmp(header->kind, "PNG") != 0) {
        verdict.fault = header ? std::string("it is a ") + header->kind + " image" : "it is no image";
        return verdict;
    }
    png_reader reader;
    if (png_image_begin_read_from_memory(&reader.image, body.begin(), body.size()) == 0) {
        verdict.fault = "a damaged PNG: " + reader.message();
        return verdict;
    }
    if (std::uint64_t{reader.image.width} * reader.image.height > kMostPixels) {
        verdict.fault = "a PNG of more than 16 million pixels";
        return verdict;
    }
    reader.image.format = PNG_FORMAT_RGBA;
    std::vector<png_byte> pixels(PNG_IMAGE_SIZE(reader.image));
    if (png_image_finish_read(&reader.image, nullptr, pixels.data(), 0, nullptr) == 0) {
        verdict.fault = "a damaged PNG: " + reader.message();
        return verdict;
    }
    verdict.good = true;
    return verdict;
}

}  // namespace dabspi::check

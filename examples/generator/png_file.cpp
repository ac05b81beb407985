#include <png.h>

#include <stdexcept>

#include "examples/generator/image_files.h"

namespace generator {

using spi_builder::bytes;

bytes png_file(const canvas& picture) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(picture.width());
    image.height = static_cast<png_uint_32>(picture.height());
    image.format = PNG_FORMAT_RGB_COLORMAP;
    image.colormap_entries = static_cast<png_uint_32>(picture.palette().size());

    bytes colours;
    for (const rgb& one : picture.palette())
        colours.insert(colours.end(), {one.red, one.green, one.blue});

    png_alloc_size_t size = 0;
    bytes file;
    const auto write = [&](void* memory) {
        if (png_image_write_to_memory(&image, memory, &size, 0, picture.pixels().data(), 0, colours.data()) ==
            0) {
            throw std::runtime_error(std::string("libpng: ") + image.message);
        }
    };
    write(nullptr);  // only asks for the size
    file.resize(size);
    write(file.data());
    file.resize(size);
    return file;
}

}  // namespace generator

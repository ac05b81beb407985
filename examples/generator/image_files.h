// Pictures as the files that are broadcast: PNG (by libpng) and JPEG in a JFIF file.
#pragma once

#include "examples/generator/canvas.h"
#include "testkit/spi_builder.h"

namespace generator {

// PNG with a palette. Throws std::runtime_error with libpng's own words.
spi_builder::bytes png_file(const canvas& picture);

// Baseline JPEG of eight times the picture's width and height: each pixel becomes one block of 8 x 8 in its
// colour. A flat block is its mean value and nothing else, so the coder needs one coefficient a block and no
// cosine transform, and gives the same bytes on every machine.
spi_builder::bytes jfif_file(const canvas& picture);

}  // namespace generator

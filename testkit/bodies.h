// From built bytes to the bodies that the library takes.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>

#include "src/parse/mot_body.h"
#include "testkit/spi_builder.h"

// An array of exactly the body's size: a read beyond it is seen by AddressSanitizer.
inline spi::MotBody body_of(const spi_builder::bytes& bytes) {
    std::unique_ptr<unsigned char[]> data(new unsigned char[bytes.size()]);
    std::copy(bytes.begin(), bytes.end(), data.get());
    return spi::MotBody(static_cast<std::uint32_t>(bytes.size()), std::move(data));
}

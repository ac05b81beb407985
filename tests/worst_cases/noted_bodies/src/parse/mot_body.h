// Stands in front of the library's header of this name: bodies whose bytes note how far they are read. The
// parsers are compiled against them.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "tests/worst_cases/noted_bytes.h"

namespace spi {

struct MotBody {
    std::uint32_t size = 0;
    noted_bytes data;

    MotBody() = default;
    MotBody(std::uint32_t byte_count, std::unique_ptr<unsigned char[]> bytes)
        : size(bytes ? byte_count : 0), data(std::move(bytes)) {}
    MotBody(MotBody&& other) noexcept : size(std::exchange(other.size, 0U)), data(std::move(other.data)) {}
};

struct MotBodyMetadata {
    std::uint16_t user_application_type = 0;
    std::uint8_t content_type = 0;
    std::uint16_t content_subtype = 0;
    std::string content_name;
};

}  // namespace spi

// One received MOT object as the core passes it on: its body and the header parameters that matter here.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

namespace spi {

// The body's bytes. Moved from hand to hand, never copied; a moved-from body is empty, its size included. A
// body made without an array is empty, whatever size was named.
struct MotBody {
    std::uint32_t size = 0;                 // bytes
    std::unique_ptr<unsigned char[]> data;  // null in an empty body

    // Empty.
    MotBody() = default;
    // Takes over an array of `byte_count` bytes.
    MotBody(std::uint32_t byte_count, std::unique_ptr<unsigned char[]> bytes)
        : size(bytes ? byte_count : 0), data(std::move(bytes)) {}
    // Leaves `other` empty.
    MotBody(MotBody&& other) noexcept
        : size(std::exchange(other.size, std::uint32_t{0})), data(std::move(other.data)) {}
    // Releases its own bytes and leaves `other` empty.
    MotBody& operator=(MotBody&& other) noexcept {
        size = std::exchange(other.size, std::uint32_t{0});
        data = std::move(other.data);
        return *this;
    }
    MotBody(const MotBody&) = delete;
    MotBody& operator=(const MotBody&) = delete;
};

// MOT header parameters (ETSI EN 301 234).
struct MotBodyMetadata {
    std::uint16_t user_application_type = 0;  // of the data service; 7 is SPI
    std::uint8_t content_type = 0;            // 2 image, 7 binary SPI object
    // Images: 1 JFIF, 3 PNG. SPI objects: 0 service information, 1 programme information.
    std::uint16_t content_subtype = 0;
    std::string content_name;  // any bytes; a logo is announced and found by it
};

}  // namespace spi

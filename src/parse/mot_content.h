// The MOT header parameters (ETSI EN 301 234; TS 102 371 for SPI objects) that this system knows.
#pragma once

#include <cstdint>

namespace spi {

constexpr std::uint16_t kSpiApplication = 7;  // user application type

// ContentType
constexpr std::uint8_t kMotImage = 2;
constexpr std::uint8_t kMotSpiObject = 7;

// ContentSubType of images
constexpr std::uint16_t kMotGif = 0;
constexpr std::uint16_t kMotJfif = 1;
constexpr std::uint16_t kMotBmp = 2;
constexpr std::uint16_t kMotPng = 3;

// ContentSubType of SPI objects
constexpr std::uint16_t kMotServiceInformation = 0;
constexpr std::uint16_t kMotProgrammeInformation = 1;
constexpr std::uint16_t kMotGroupInformation = 2;

}  // namespace spi

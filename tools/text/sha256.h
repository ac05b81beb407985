// SHA-256 (FIPS 180-4), for content security policies. Any thread.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace dabspi {

std::array<std::uint8_t, 32> sha256(std::string_view of);

}  // namespace dabspi

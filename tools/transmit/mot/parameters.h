// Parameters of MOT headers and directories (EN 301 234, 6.2) and the times in them, as they are sent. Pure
// functions, any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "tools/spi/byte_view.h"
#include "tools/spi/values.h"

namespace dabspi::transmit {

using spi_object::byte_view;
using spi_object::bytes;

// The lowest `count` bytes of a number, most significant first.
void append_number(bytes& to, std::uint64_t value, unsigned count);
void append_bytes(bytes& to, byte_view what);

// In the shortest form for its length. `value` has at most 32,767 bytes.
void append_parameter(bytes& to, std::uint8_t id, byte_view value);

// Absolute time, UTC: four bytes, six where there are seconds or milliseconds.
bytes mot_time_bytes(const spi_object::time_value& time);

// Character sets of content names, by their number in MOT.
enum class name_charset : std::uint8_t { ebu_latin = 0, iso_8859_1 = 4, utf_8 = 15 };

// Nothing when the name, UTF-8, has a character that the set does not have.
std::optional<std::string> in_charset(std::string_view name, name_charset charset);

// The value of a ContentName: the set's number, then the name in it.
bytes content_name_bytes(std::string_view name_in_charset, name_charset charset);

}  // namespace dabspi::transmit

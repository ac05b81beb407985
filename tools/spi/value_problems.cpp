#include "tools/spi/value_problems.h"

#include <charconv>

namespace dabspi::spi_object {

namespace {

template <class Number>
bool parse_number(std::string_view text, std::size_t most, int base, Number& value) {
    if (text.empty() || text.size() > most) return false;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, value, base);
    return read.ec == std::errc() && read.ptr == end;
}

}  // namespace

bool parse_digits(std::string_view text, unsigned& value) {
    return parse_number(text, 9, 10, value);
}
bool parse_hex(std::string_view text, std::uint32_t& value) {
    return parse_number(text, 8, 16, value);
}

}  // namespace dabspi::spi_object

#include "tools/transmit/mot/parameters.h"

#include "tools/text/ebu_latin.h"

namespace dabspi::transmit {

namespace {

constexpr std::size_t kShortLength = 127;

byte_view view_of(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

}  // namespace

void append_number(bytes& to, std::uint64_t value, unsigned count) {
    while (count-- != 0)
        to.push_back(static_cast<std::uint8_t>(value >> 8 * count));
}

void append_bytes(bytes& to, byte_view what) {
    to.insert(to.end(), what.begin(), what.end());
}

void append_parameter(bytes& to, std::uint8_t id, byte_view value) {
    const auto first = [&](unsigned form) { return form << 6 | id; };
    switch (value.size()) {
        case 0: append_number(to, first(0), 1); break;
        case 1: append_number(to, first(1), 1); break;
        case 4: append_number(to, first(2), 1); break;
        default:
            append_number(to, first(3), 1);
            if (value.size() <= kShortLength) {
                append_number(to, value.size(), 1);
            } else {
                append_number(to, 0x8000 | value.size(), 2);
            }
    }
    append_bytes(to, value);
}

bytes mot_time_bytes(const spi_object::time_value& time) {
    const bool long_form = time.second != 0 || time.millisecond != 0;
    bytes made;
    append_number(
        made,
        std::uint32_t{1} << 31 | time.mjd << 14 | (long_form ? 1U : 0U) << 11 | time.hour << 6 | time.minute,
        4);
    if (long_form) append_number(made, time.second << 10 | time.millisecond, 2);
    return made;
}

std::optional<std::string> in_charset(std::string_view name, name_charset charset) {
    switch (charset) {
        case name_charset::ebu_latin: return utf8_to_ebu_latin(name);
        case name_charset::iso_8859_1: return utf8_to_iso_8859_1(name);
        default: return std::string(name);
    }
}

bytes content_name_bytes(std::string_view name_in_charset, name_charset charset) {
    bytes made;
    append_number(made, static_cast<std::uint64_t>(charset) << 4, 1);
    append_bytes(made, view_of(name_in_charset));
    return made;
}

}  // namespace dabspi::transmit

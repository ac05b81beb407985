#include "testkit/spi_builder.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

namespace spi_builder {

namespace {

void require(bool holds, const char* what) {
    if (!holds) throw std::invalid_argument(what);
}

bytes big_endian(std::uint32_t value, unsigned count) {
    require(count == 4 || value < (1U << (8 * count)), "number does not fit its field");
    bytes out;
    for (unsigned i = count; i > 0; --i)
        out.push_back(static_cast<std::uint8_t>(value >> (8 * (i - 1))));
    return out;
}

bytes identifier(std::uint8_t ecc, std::uint16_t eid, std::uint32_t sid, std::uint8_t scids, bool wide) {
    require(scids < 16, "SCIdS does not fit four bits");
    constexpr std::uint32_t ensemble_flag = 0x40;
    constexpr std::uint32_t wide_flag = 0x10;
    return join(
        {u8(ensemble_flag | (wide ? wide_flag : 0U) | scids), u8(ecc), u16(eid), wide ? u32(sid) : u16(sid)});
}

}  // namespace

bytes join(const std::vector<bytes>& parts) {
    bytes out;
    for (const bytes& part : parts)
        out.insert(out.end(), part.begin(), part.end());
    return out;
}

bytes join(std::initializer_list<bytes> parts) {
    return join(std::vector<bytes>(parts));
}

bytes cut(const bytes& whole, std::size_t size) {
    const std::size_t kept = std::min(size, whole.size());
    return bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(kept));
}

bytes u8(std::uint32_t value) {
    return big_endian(value, 1);
}
bytes u16(std::uint32_t value) {
    return big_endian(value, 2);
}
bytes u24(std::uint32_t value) {
    return big_endian(value, 3);
}
bytes u32(std::uint32_t value) {
    return big_endian(value, 4);
}

bytes str(std::string_view value) {
    return bytes(value.begin(), value.end());
}

bytes length_fe(std::size_t value) {
    if (value > 0xFFFF) throw std::length_error("length does not fit two bytes");
    return join({u8(0xFE), u16(static_cast<std::uint32_t>(value))});
}

bytes length_ff(std::size_t value) {
    if (value > 0xFFFFFF) throw std::length_error("length does not fit three bytes");
    return join({u8(0xFF), u24(static_cast<std::uint32_t>(value))});
}

bytes length(std::size_t value) {
    if (value <= 253) return u8(static_cast<std::uint32_t>(value));
    return value <= 0xFFFF ? length_fe(value) : length_ff(value);
}

bytes elem(std::uint8_t tag, const bytes& content) {
    return elem_stating(tag, content.size(), content);
}
bytes elem(std::uint8_t tag, std::initializer_list<bytes> children) {
    return elem(tag, join(children));
}
bytes elem(std::uint8_t tag, const std::vector<bytes>& children) {
    return elem(tag, join(children));
}
bytes attr(std::uint8_t tag, const bytes& value) {
    return elem(tag, value);
}

bytes elem_fe(std::uint8_t tag, const bytes& content) {
    return join({u8(tag), length_fe(content.size()), content});
}

bytes elem_ff(std::uint8_t tag, const bytes& content) {
    return join({u8(tag), length_ff(content.size()), content});
}

bytes elem_stating(std::uint8_t tag, std::size_t stated, const bytes& content) {
    return join({u8(tag), length(stated), content});
}

bytes text(std::string_view value) {
    return elem(tag::text, str(value));
}

bytes token_table(const std::vector<std::pair<std::uint8_t, std::string>>& entries) {
    std::vector<bytes> coded;
    for (const auto& [code, meaning] : entries)
        coded.push_back(elem(code, str(meaning)));
    return elem(tag::token_table, coded);
}

bytes content_id(std::uint8_t ecc, std::uint16_t eid, std::uint32_t sid, std::uint8_t scids) {
    return identifier(ecc, eid, sid, scids, sid > 0xFFFF);
}

bytes content_id_32(std::uint8_t ecc, std::uint16_t eid, std::uint32_t sid, std::uint8_t scids) {
    return identifier(ecc, eid, sid, scids, true);
}

// Counts whole days from 1 March of year 0, so that the leap day is a year's last and needs no case of its
// own. All in integers: no rounding, and no resemblance to the floating-point formula of ETSI EN 300 468 that
// receivers use.
std::uint32_t mjd(int year, unsigned month, unsigned day) {
    require(year >= 1859 && year <= 2200 && month >= 1 && month <= 12 && day >= 1 && day <= 31,
            "not a day of the calendar");
    const long long y = month <= 2 ? year - 1 : year;
    const long long m = month <= 2 ? month + 9 : month - 3;  // March is 0
    const long long from_march_of_year_0 = 365 * y + y / 4 - y / 100 + y / 400 + (153 * m + 2) / 5 + day - 1;
    constexpr long long march_of_year_0_to_mjd_0 = 678881;
    return static_cast<std::uint32_t>(from_march_of_year_0 - march_of_year_0_to_mjd_0);
}

bytes time_point(std::uint32_t day, unsigned hour, unsigned minute, std::optional<int> offset_half_hours,
                 std::optional<utc_fraction> fraction) {
    require(day < (1U << 17) && hour < 32 && minute < 64, "time does not fit its fields");
    constexpr std::uint32_t offset_flag = 1U << 12;
    constexpr std::uint32_t long_form_flag = 1U << 11;
    bytes out = u32(day << 14 | (offset_half_hours ? offset_flag : 0) | (fraction ? long_form_flag : 0) |
                    hour << 6 | minute);
    if (fraction) {
        require(fraction->second < 64 && fraction->millisecond < 1024, "seconds do not fit their fields");
        out = join({out, u16(fraction->second << 10 | fraction->millisecond)});
    }
    if (offset_half_hours) {
        const int magnitude = std::abs(*offset_half_hours);
        require(magnitude < 32, "local time offset does not fit five bits");
        constexpr unsigned negative = 0x20;
        out = join({out, u8(static_cast<unsigned>(magnitude) | (*offset_half_hours < 0 ? negative : 0U))});
    }
    return out;
}

}  // namespace spi_builder

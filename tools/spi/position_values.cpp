// Places: pairs of signed 24-bit numbers and decimal degrees.

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "tools/spi/value_problems.h"
#include "tools/spi/values.h"

namespace dabspi::spi_object {

namespace {

constexpr double kLatitudeUnit = 92000;
constexpr double kLongitudeUnit = 46000;
constexpr std::size_t kPairSize = 6;

std::int32_t signed24(std::uint32_t coded) {
    return (coded & 0x800000) != 0 ? static_cast<std::int32_t>(coded) - 0x1000000
                                   : static_cast<std::int32_t>(coded);
}

bool is_blank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

}  // namespace

bool operator==(const position& a, const position& b) {
    return a.latitude == b.latitude && a.longitude == b.longitude;
}

std::vector<position> decode_positions(byte_view from, std::vector<problem>& problems) {
    std::vector<position> value;
    for (std::size_t at = 0; at + kPairSize <= from.size(); at += kPairSize) {
        value.push_back({signed24(from.number(at, 3)), signed24(from.number(at + 3, 3))});
        if (std::abs(value.back().latitude) > 90 * kLatitudeUnit ||
            std::abs(value.back().longitude) > 180 * kLongitudeUnit)
            note(problems, problem_code::position_out_of_range, at, "there is no such place");
    }
    if (from.size() % kPairSize != 0 || from.empty())
        note(problems, problem_code::value_too_short, from.size(),
             "a place takes 6 bytes, and " + count_of(from.size(), "byte") +
                 (from.size() == 1 ? " is" : " are") + " no whole number of places");
    return value;
}

bytes encode_positions(const std::vector<position>& value) {
    bytes out;
    for (const position& each : value) {
        for (const std::int32_t number : {each.latitude, each.longitude}) {
            const auto coded = static_cast<std::uint32_t>(number);
            out.insert(out.end(), {static_cast<std::uint8_t>(coded >> 16),
                                   static_cast<std::uint8_t>(coded >> 8), static_cast<std::uint8_t>(coded)});
        }
    }
    return out;
}

std::string positions_text(const std::vector<position>& value) {
    std::string text;
    for (const position& each : value) {
        char pair[64];
        std::snprintf(pair, sizeof pair, "%s%.6f %.6f", text.empty() ? "" : " ",
                      each.latitude / kLatitudeUnit, each.longitude / kLongitudeUnit);
        text += pair;
    }
    return text;
}

std::optional<std::vector<position>> parse_positions(std::string_view text) {
    std::vector<double> numbers;
    for (std::size_t at = 0; at < text.size();) {
        if (is_blank(text[at])) {
            ++at;
            continue;
        }
        double number = 0;
        // from_chars knows no leading plus, and minds no locale.
        const std::size_t begin = text[at] == '+' ? at + 1 : at;
        const auto read = std::from_chars(text.data() + begin, text.data() + text.size(), number);
        if (read.ec != std::errc() || !std::isfinite(number)) return std::nullopt;
        at = static_cast<std::size_t>(read.ptr - text.data());
        if (at < text.size() && !is_blank(text[at])) return std::nullopt;
        numbers.push_back(number);
    }
    if (numbers.size() % 2 != 0 || numbers.empty()) return std::nullopt;
    std::vector<position> value;
    for (std::size_t i = 0; i < numbers.size(); i += 2) {
        if (std::fabs(numbers[i]) > 90 || std::fabs(numbers[i + 1]) > 180) return std::nullopt;
        value.push_back({static_cast<std::int32_t>(std::lround(numbers[i] * kLatitudeUnit)),
                         static_cast<std::int32_t>(std::lround(numbers[i + 1] * kLongitudeUnit))});
    }
    return value;
}

}  // namespace dabspi::spi_object

#include "tools/recording/json_values.h"

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>

#include "tools/text/utf8.h"

namespace dabspi {

namespace {

using nlohmann::json;

// A number's value; nothing if the text is not a number at all. Beyond 64 bits it stays at the largest value,
// which is out of every field's range.
std::optional<std::uint64_t> number_of_text(std::string_view text) {
    unsigned base = 10;
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        base = 16;
        text.remove_prefix(2);
    }
    if (text.empty()) return std::nullopt;
    constexpr auto most = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t value = 0;
    for (const char c : text) {
        unsigned digit = base;
        if (c >= '0' && c <= '9') digit = static_cast<unsigned>(c - '0');
        if (c >= 'a' && c <= 'f') digit = static_cast<unsigned>(c - 'a') + 10;
        if (c >= 'A' && c <= 'F') digit = static_cast<unsigned>(c - 'A') + 10;
        if (digit >= base) return std::nullopt;
        value = value > (most - digit) / base ? most : value * base + digit;
    }
    return value;
}

}  // namespace

whole_number read_whole_number(const json& value, std::uint64_t most) {
    std::optional<std::uint64_t> number;
    bool in_range = true;
    if (value.is_number_unsigned()) {
        number = value.get<std::uint64_t>();
    } else if (value.is_number_integer()) {
        in_range = false;  // negative
    } else if (value.is_number_float()) {
        // 7.0 and 1e2 are whole numbers; one too large for an integer is read as a float as well.
        const auto real = value.get<double>();
        in_range = real >= 0 && real <= static_cast<double>(most);
        if (in_range && real == std::floor(real)) number = static_cast<std::uint64_t>(real);
    } else if (value.is_string()) {
        number = number_of_text(value.get_ref<const std::string&>());
    }
    in_range = in_range && (!number || *number <= most);
    if (!in_range) return {0, json_text(value) + " is out of range (0 to " + std::to_string(most) + ")"};
    if (!number)
        return {0, "is " + json_text(value) +
                       "; a whole number is needed, or its text in decimal or with 0x in hexadecimal"};
    return {*number, {}};
}

std::string json_text(const json& value) {
    if (value.is_string()) return in_quotes(value.get_ref<const std::string&>());
    if (value.is_structured()) return value.is_array() ? "an array" : "an object";
    return value.dump();
}

std::string json_error_text(const std::exception& error, bool with_line) {
    std::string what = error.what();
    auto start = what.find(with_line ? "line " : "column ");
    if (start == std::string::npos) start = what.find("] ") + 2;
    what.erase(0, start);
    // Without the half line that it may quote.
    const auto last_read = what.find("; last read: ");
    if (last_read != std::string::npos && what.size() - last_read > 80) what.resize(last_read);
    return "this is not JSON: " + printable(what);
}

}  // namespace dabspi

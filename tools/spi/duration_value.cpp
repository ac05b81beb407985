// Durations in ISO 8601.

#include <limits>

#include "tools/spi/value_problems.h"
#include "tools/spi/values.h"

namespace dabspi::spi_object {

std::string duration_text(std::uint32_t seconds) {
    if (seconds == 0) return "PT0S";
    std::string text = "PT";
    if (seconds >= 3600) text += std::to_string(seconds / 3600) + "H";
    if (seconds / 60 % 60 != 0) text += std::to_string(seconds / 60 % 60) + "M";
    if (seconds % 60 != 0) text += std::to_string(seconds % 60) + "S";
    return text;
}

std::optional<std::uint32_t> parse_duration(std::string_view text) {
    if (text.empty() || text.front() != 'P') return std::nullopt;
    text.remove_prefix(1);
    struct unit {
        char letter;
        bool of_the_day;
        std::uint64_t seconds;
    };
    constexpr unit kUnits[] = {
        {'W', false, 604800}, {'D', false, 86400}, {'H', true, 3600}, {'M', true, 60}, {'S', true, 1}};
    std::uint64_t sum = 0;
    bool of_the_day = false;
    bool any = false;
    const unit* next = std::begin(kUnits);  // units stand in this order
    while (!text.empty()) {
        if (text.front() == 'T' && !of_the_day) {
            of_the_day = true;
            any = false;  // something must follow
            text.remove_prefix(1);
            continue;
        }
        const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
        unsigned count = 0;
        if (digits == text.size() || !parse_digits(text.substr(0, digits), count)) return std::nullopt;
        while (next != std::end(kUnits) && (next->letter != text[digits] || next->of_the_day != of_the_day))
            ++next;
        if (next == std::end(kUnits)) return std::nullopt;
        sum += count * next->seconds;
        ++next;
        any = true;
        text.remove_prefix(digits + 1);
    }
    if (!any || sum > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
    return static_cast<std::uint32_t>(sum);
}

}  // namespace dabspi::spi_object

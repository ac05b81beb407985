// Genres: bytes and urn:tva: URNs.

#include <array>

#include "tools/spi/value_problems.h"
#include "tools/spi/values.h"

namespace dabspi::spi_object {

namespace {

constexpr std::array<const char*, 9> kSchemes = {nullptr,          "IntentionCS",        "FormatCS",
                                                 "ContentCS",      "IntendedAudienceCS", "OriginationCS",
                                                 "ContentAlertCS", "MediaTypeCS",        "AtmosphereCS"};
constexpr std::string_view kUrn = "urn:tva:metadata:cs:";
constexpr const char* kYear = "2005";  // not coded; a year of the classification schemes
constexpr std::size_t kMostLevels = 3;

}  // namespace

bool operator==(const genre_value& a, const genre_value& b) {
    return a.scheme == b.scheme && a.levels == b.levels;
}

genre_value decode_genre(byte_view from, std::vector<problem>& problems) {
    if (from.text().substr(0, 4) == kUrn.substr(0, 4)) {
        note(problems, problem_code::genre_as_text, 0,
             "the URN is written as text; it has a coding of 1 to 4 bytes");
        return {};
    }
    genre_value value;
    if (from.empty()) {
        check_size(from, 1, problems, {}, {});
        return value;
    }
    value.scheme = from[0] & 0x0F;
    const byte_view levels = from.part(1, kMostLevels);
    value.levels.assign(levels.begin(), levels.end());
    if (from.size() > 1 + kMostLevels) check_size(from, 1 + kMostLevels, problems, {}, {});
    if (genre_scheme_name(value.scheme) == nullptr)
        note(problems, problem_code::genre_scheme_unknown, 0,
             "there is no classification scheme " + std::to_string(value.scheme));
    if ((from[0] & 0xF0) != 0) note(problems, problem_code::reserved_bits, 0, "reserved bits are set");
    return value;
}

bytes encode_genre(const genre_value& value) {
    bytes out = {static_cast<std::uint8_t>(value.scheme & 0x0F)};
    for (std::size_t i = 0; i < value.levels.size() && i < kMostLevels; ++i)
        out.push_back(value.levels[i]);
    return out;
}

std::string genre_text(const genre_value& value) {
    const char* const name = genre_scheme_name(value.scheme);
    std::string text = std::string(kUrn) + (name == nullptr ? "unknown" : name) + ":" + kYear + ":" +
                       std::to_string(value.scheme);
    for (const std::uint8_t level : value.levels)
        text += "." + std::to_string(level);
    return text;
}

std::optional<genre_value> parse_genre(std::string_view text) {
    if (text.substr(0, kUrn.size()) != kUrn) return std::nullopt;
    text.remove_prefix(kUrn.size());
    const std::size_t name_end = text.find(':');
    if (name_end == std::string_view::npos) return std::nullopt;
    const std::string_view name = text.substr(0, name_end);
    text.remove_prefix(name_end + 1);
    const std::size_t year_end = text.find(':');
    unsigned year = 0;
    if (year_end == std::string_view::npos || !parse_digits(text.substr(0, year_end), year))
        return std::nullopt;
    text.remove_prefix(year_end + 1);

    genre_value value;
    for (std::size_t part = 0;; ++part) {
        const std::size_t end = text.find('.');
        unsigned number = 0;
        if (part > kMostLevels || !parse_digits(text.substr(0, end), number) || number > 255)
            return std::nullopt;
        if (part != 0) {
            value.levels.push_back(static_cast<std::uint8_t>(number));
        } else if (number < kSchemes.size() && kSchemes[number] != nullptr && name == kSchemes[number]) {
            value.scheme = static_cast<std::uint8_t>(number);
        } else {
            return std::nullopt;
        }
        if (end == std::string_view::npos) return value;
        text.remove_prefix(end + 1);
    }
}

const char* genre_scheme_name(std::uint8_t scheme) {
    return scheme < kSchemes.size() ? kSchemes[scheme] : nullptr;
}

}  // namespace dabspi::spi_object

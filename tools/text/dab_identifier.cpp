#include "tools/text/dab_identifier.h"

#include <algorithm>
#include <cstdio>
#include <vector>

#include "tools/text/utf8.h"

namespace dabspi {

namespace {

constexpr unsigned kMostScids = 15;

int digit_of(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// Hexadecimal digits, at least one, at most eight.
std::optional<std::uint32_t> hexadecimal(std::string_view text) {
    if (text.empty() || text.size() > 8) return std::nullopt;
    std::uint32_t value = 0;
    for (const char c : text) {
        const int digit = digit_of(c);
        if (digit < 0) return std::nullopt;
        value = value << 4 | static_cast<std::uint32_t>(digit);
    }
    return value;
}

bool has_prefix(std::string_view text) {
    return text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
}

// With 0x any number of digits up to `digits`, without it all of them: what is shorter would be a guess.
std::optional<std::uint32_t> number(std::string_view text, std::size_t digits) {
    const bool prefixed = has_prefix(text);
    if (prefixed) text.remove_prefix(2);
    if (text.size() > digits || (!prefixed && text.size() != digits)) return std::nullopt;
    return hexadecimal(text);
}

std::optional<std::uint8_t> country_code(std::string_view text) {
    // Of a bearer URI: the country's nibble stands in front.
    if (text.size() == 3 && digit_of(text[0]) >= 0) text.remove_prefix(1);
    const auto value = number(text, 2);
    return value ? std::optional(static_cast<std::uint8_t>(*value)) : std::nullopt;
}

std::optional<std::uint32_t> service_number(std::string_view text) {
    const auto programme_service = number(text, 4);
    return programme_service ? programme_service : number(text, 8);
}

// One digit as in bearer URIs, or decimal as replays print it.
std::optional<std::uint8_t> component(std::string_view text) {
    if (text.size() == 1) {
        const auto value = hexadecimal(text);
        return value ? std::optional(static_cast<std::uint8_t>(*value)) : std::nullopt;
    }
    if (text.size() != 2 || text[0] != '1' || text[1] < '0' || text[1] > '9') return std::nullopt;
    const unsigned value = 10U + static_cast<unsigned>(text[1] - '0');
    return value <= kMostScids ? std::optional(static_cast<std::uint8_t>(value)) : std::nullopt;
}

std::vector<std::string_view> parts_of(std::string_view text) {
    if (text.substr(0, 4) == "dab:") text.remove_prefix(4);
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t end = text.find('.');
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos) return parts;
        text.remove_prefix(end + 1);
    }
}

std::string hexadecimal_text(std::uint32_t value, int digits) {
    char text[16];
    std::snprintf(text, sizeof text, "%0*X", digits, static_cast<unsigned>(value));
    return text;
}

}  // namespace

std::optional<dab_identifier> dab_identifier::of_ensemble(std::string_view text) {
    const std::vector<std::string_view> parts = parts_of(text);
    if (parts.size() > 2) return std::nullopt;
    dab_identifier value;
    const auto eid = number(parts.back(), 4);
    if (!eid) return std::nullopt;
    value.ensemble = static_cast<std::uint16_t>(*eid);
    if (parts.size() == 1) return value;
    value.ecc = country_code(parts.front());
    return value.ecc ? std::optional(value) : std::nullopt;
}

std::optional<dab_identifier> dab_identifier::of_service(std::string_view text) {
    std::vector<std::string_view> parts = parts_of(text);
    if (parts.size() > 4) return std::nullopt;
    dab_identifier value;
    // SCIdS have one or two digits, SIds four or more.
    if (parts.size() > 1 && parts.back().size() <= 2) {
        value.scids = component(parts.back());
        if (!value.scids) return std::nullopt;
        parts.pop_back();
    }
    value.sid = service_number(parts.back());
    if (!value.sid || parts.size() > 3) return std::nullopt;
    parts.pop_back();
    if (parts.empty()) return value;
    value.ecc = country_code(parts.front());
    if (!value.ecc) return std::nullopt;
    if (parts.size() == 2) {
        const auto eid = number(parts.back(), 4);
        if (!eid) return std::nullopt;
        value.ensemble = static_cast<std::uint16_t>(*eid);
    }
    return value;
}

std::string dab_identifier::ensemble_text() const {
    return (ecc ? hexadecimal_text(*ecc, 2) + "." : "") + hexadecimal_text(ensemble.value_or(0), 4);
}

std::string dab_identifier::service_text() const {
    const std::uint32_t number = sid.value_or(0);
    return (ecc ? hexadecimal_text(*ecc, 2) + "." : "") + hexadecimal_text(number, number > 0xFFFF ? 8 : 4) +
           (scids ? "." + std::to_string(unsigned{*scids}) : std::string());
}

namespace {

// Somebody converted it.
std::string said_in_hexadecimal(std::string_view text, std::uint32_t most) {
    if (text.empty() || text.size() > 9 ||
        !std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; }))
        return {};
    const unsigned long value = std::stoul(std::string(text));
    return value > most ? std::string()
                        : "; decimal " + std::string(text) + " is 0x" +
                              hexadecimal_text(static_cast<std::uint32_t>(value), 4);
}

}  // namespace

std::string no_ensemble(std::string_view text) {
    return in_quotes(text) + " is no ensemble; an ensemble is written 0xC185, C185 or e1.C185 (ECC and EId)" +
           said_in_hexadecimal(text, 0xFFFF);
}

std::string no_service(std::string_view text) {
    return in_quotes(text) +
           " is no service; a service is written 0xC221, E1.C221, E1.C221.0 (ECC, SId, SCIdS) or "
           "e1.c185.c221.0 "
           "(with the EId)" +
           said_in_hexadecimal(text, 0xFFFFFFFF);
}

}  // namespace dabspi

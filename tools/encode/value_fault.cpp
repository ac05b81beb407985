#include "tools/encode/value_fault.h"

#include <cstdint>
#include <cstdio>
#include <utility>

#include "tools/spi/node_values.h"
#include "tools/spi/value_problems.h"
#include "tools/spi/values.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

using spi_object::attribute_entry;
using spi_object::bytes;
using spi_object::kMinutesOfDay;
using spi_object::value_type;

constexpr std::int64_t kLastDay = 0x1FFFF;  // of 17 bits

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

bytes to_bytes(const std::string& text) {
    return {text.begin(), text.end()};
}

// A character that a broadcast text must not hold: below U+0020 most are tokens.
bool is_forbidden(char32_t c) {
    return (c < 0x20 && c != '\t' && c != '\n' && c != '\r') || (c >= 0x7F && c < 0xA0) || c == 0xFFFE ||
           c == 0xFFFF;
}

coded_value code_text(const std::string& text) {
    std::string clean;
    char32_t forbidden = 0;
    bool any = false;
    for (std::string_view rest = text; !rest.empty();) {
        const utf8_part part = first_utf8_part(rest);
        if (!part.well_formed || is_forbidden(part.code_point)) {
            if (!any) forbidden = part.code_point;
            any = true;
        } else {
            clean += rest.substr(0, part.length);
        }
        rest.remove_prefix(part.length);
    }
    if (!any) return {to_bytes(text), std::nullopt};
    char name[16];
    std::snprintf(name, sizeof name, "U+%04X", static_cast<unsigned>(forbidden));
    return {{},
            value_fault{(forbidden < 0xA0 ? "the control character " : "the character ") + std::string(name) +
                            (forbidden < 0x20 ? "; the coding uses such bytes for tokens" : ""),
                        "remove it", to_bytes(clean), "such characters removed"}};
}

coded_value refused(std::string text, std::string remedy) {
    return {{}, value_fault{std::move(text), std::move(remedy), std::nullopt, {}}};
}

// The same moment, without its offset.
coded_value offset_without_coding(const std::string& what, spi_object::time_value instant, unsigned minutes,
                                  bool behind_utc) {
    const std::int64_t shift = behind_utc ? std::int64_t{minutes} : -std::int64_t{minutes};
    const std::int64_t minute =
        std::int64_t{instant.mjd} * kMinutesOfDay + instant.hour * 60 + instant.minute + shift;
    value_fault fault{what + " has an offset that has no coding: half-hours are counted, up to 15:30",
                      "give the time with another offset, or with Z",
                      std::nullopt,
                      {}};
    if (minute >= 0 && minute / kMinutesOfDay <= kLastDay) {
        instant.mjd = static_cast<std::uint32_t>(minute / kMinutesOfDay);
        instant.hour = static_cast<unsigned>(minute % kMinutesOfDay / 60);
        instant.minute = static_cast<unsigned>(minute % 60);
        fault.repaired = spi_object::encode_time(instant);
        fault.repaired_how = "coded in UTC, without an offset";
    }
    return {{}, std::move(fault)};
}

coded_value refused_time(const std::string& text) {
    const std::string what = in_quotes(text);
    const std::size_t clock = text.find('T');
    const std::size_t zone = clock == std::string::npos ? clock : text.find_first_of("Z+-", clock);
    if (clock != std::string::npos && zone != std::string::npos && text[zone] != 'Z') {
        const std::optional<spi_object::time_value> instant =
            spi_object::parse_time(text.substr(0, zone) + "Z");
        const std::string offset = text.substr(zone + 1);
        unsigned hours = 0;
        unsigned minutes = 0;
        const bool read = offset.size() == 5 && offset[2] == ':' &&
                          spi_object::parse_digits(offset.substr(0, 2), hours) && hours <= 24 &&
                          spi_object::parse_digits(offset.substr(3), minutes) && minutes < 60;
        if (instant && read)
            return offset_without_coding(what, *instant, hours * 60 + minutes, text[zone] == '-');
    }
    return refused(what + " is no date and time of the years 1858 to 2217",
                   "write it like 2026-03-10T07:00:00+01:00");
}

coded_value code_time(const std::string& text) {
    const std::optional<spi_object::time_value> time = spi_object::parse_time(text);
    if (!time) return refused_time(text);
    if (!time->offset && text.back() != 'Z')
        return {{},
                value_fault{
                    in_quotes(text) + " has no time zone, so it is no certain moment",
                    "say what it is: local time with its offset, such as +01:00, is shown as it stands; UTC, "
                    "with Z, is shown as UTC; --offset or --zone says it of all",
                    spi_object::encode_time(*time), "taken as UTC"}};
    return {spi_object::encode_time(*time), std::nullopt};
}

coded_value refused_duration(const std::string& text) {
    const std::optional<std::uint32_t> seconds = spi_object::parse_duration(text);
    if (!seconds)
        return refused(in_quotes(text) + " is no duration of whole seconds", "write it like PT1H30M");
    return {{},
            value_fault{in_quotes(text) + " is " + std::to_string(*seconds) +
                            " s, and the coding holds 65535 s (PT18H12M15S) at most",
                        "split what lasts so long", bytes{0xFF, 0xFF}, "coded as 65535 s"}};
}

// "ContentCS" and the 4 of "urn:tva:metadata:cs:ContentCS:2011:4.2.1" contradict each other.
std::string genre_remedy(const std::string& urn) {
    for (std::uint8_t scheme = 1; spi_object::genre_scheme_name(scheme) != nullptr; ++scheme) {
        const std::string name = spi_object::genre_scheme_name(scheme);
        const std::size_t at = urn.find(":" + name + ":");
        const std::size_t numbers = urn.rfind(':') + 1;
        if (at == std::string::npos || numbers <= at + name.size() + 2) continue;
        const std::string number = urn.substr(numbers, urn.find('.', numbers) - numbers);
        if (number != std::to_string(scheme))
            return name + " is the scheme " + std::to_string(scheme) + ", and " + in_quotes(number) +
                   " is given";
    }
    return "write it like urn:tva:metadata:cs:ContentCS:2005:3.6.8: a scheme's name, a year, the scheme's "
           "number, up to three levels";
}

coded_value refused_value(const attribute_entry& attribute, const std::string& text) {
    const std::string what = in_quotes(text);
    switch (attribute.type) {
        case value_type::number16: return refused(what + " is no whole number from 0 to 65535", {});
        case value_type::number24: return refused(what + " is no whole number from 0 to 16777215", {});
        case value_type::seconds: return refused_duration(text);
        case value_type::enumeration: {
            std::string names;
            for (const spi_object::enum_name& each : attribute.names)
                names += (names.empty() ? "" : ", ") + std::string(each.name);
            return refused(what + " is no value of " + attribute.name, "write one of: " + names);
        }
        case value_type::content_id:
            return refused(what + " is no DAB service",
                           "write it like dab:ce1.c185.c221.0: country nibble of the SId and ECC, EId, SId, "
                           "SCIdS, in hexadecimal");
        case value_type::ensemble_id:
            return refused(what + " is no ensemble", "write it like e1.ce15: ECC and EId, in hexadecimal");
        case value_type::genre: return refused(what + " is no genre that has a coding", genre_remedy(text));
        case value_type::positions:
            return refused(what + " is no place",
                           "write latitude and longitude in degrees, like 51.473935 -2.508109");
        case value_type::time:
        case value_type::string:
        case value_type::token_string: break;
    }
    return refused(what + " cannot be coded", {});
}

}  // namespace

coded_value code_value(const attribute_entry& attribute, const std::string& text) {
    if (attribute.type == value_type::string || attribute.type == value_type::token_string)
        return code_text(text);
    const std::string value = trimmed(text);
    if (attribute.type == value_type::time) return code_time(value);
    std::optional<bytes> coding = spi_object::encode_value(attribute, value);
    if (!coding) return refused_value(attribute, value);
    return {std::move(*coding), std::nullopt};
}

}  // namespace dabspi

#include "tools/check/input.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include "tools/check/folder.h"
#include "tools/spi/receiver_values.h"
#include "tools/spi/value_problems.h"
#include "tools/spi/values.h"
#include "tools/text/utf8.h"

namespace dabspi::check {

namespace {

void note_missing(checked_input& in) {
    for (const recording_error& error : in.calls.errors)
        in.errors.push_back(error_text(in.calls, error));
}

bool take_number(std::string_view text, unsigned most, std::uint8_t& to) {
    unsigned value = 0;
    if (!spi_object::parse_digits(text, value) || value > most) return false;
    to = static_cast<std::uint8_t>(value);
    return true;
}

}  // namespace

std::string checked_input::location(std::size_t line) const {
    if (line == 0) return printable(calls.name);
    if (folder) return line < files.size() ? printable(files[line]) : printable(calls.name);
    return printable(calls.name) + ":" + std::to_string(line);
}

checked_input input_of(recording from) {
    checked_input in;
    in.calls = std::move(from);
    note_missing(in);
    return in;
}

checked_input read_input(const std::string& path, const folder_options& options) {
    std::error_code error;
    if (path != "-" && std::filesystem::is_directory(path, error)) return read_folder(path, options);
    checked_input in = input_of(read_recording(path, recording_limits::of(options.limit)));
    if (options.clock || options.service || options.ensemble)
        in.errors.push_back(printable(in.calls.name) +
                            ": it is a recording and says date, service and ensemble itself; "
                            "--date, --service and --ensemble are for folders");
    return in;
}

std::optional<spi::MotDateTime> parse_clock(const std::string& text) {
    std::string digits;
    std::string form;
    for (const char c : text) {
        const bool digit = c >= '0' && c <= '9';
        if (digit) digits += c;
        form += digit ? '0' : c;
    }
    const bool date_only = form == "0000-00-00" || form == "00000000";
    if (!date_only && form != "0000-00-00T00:00" && form != "0000-00-00 00:00" && form != "00000000T0000" &&
        form != "000000000000")
        return std::nullopt;
    spi::MotDateTime clock;
    clock.put_date(digits.substr(0, 8));
    clock.put_time(date_only ? "1200" : digits.substr(8));
    // By the calendar: the receiver would take 29 February 2026 for 1 March.
    const std::string day = digits.substr(0, 4) + "-" + digits.substr(4, 2) + "-" + digits.substr(6, 2);
    const bool in_range = clock.year >= 1900 && clock.year < 2200 && clock.hour <= 23 && clock.minute <= 59 &&
                          spi_object::parse_time(day + "T00:00:00Z").has_value();
    return in_range ? std::optional(clock) : std::nullopt;
}

std::optional<spi::ServElemId> parse_service(const std::string& text) {
    const auto first = text.find('.');
    if (first == std::string::npos) return std::nullopt;
    const auto second = text.find('.', first + 1);
    spi::ServElemId service;
    std::uint32_t ecc = 0;
    if (!spi_object::parse_hex(text.substr(0, first), ecc) || ecc > 0xFF) return std::nullopt;
    service.ecc = static_cast<std::uint8_t>(ecc);
    const auto length = second == std::string::npos ? second : second - first - 1;
    if (!spi_object::parse_hex(text.substr(first + 1, length), service.sid)) return std::nullopt;
    if (second != std::string::npos && !take_number(text.substr(second + 1), 15, service.scids))
        return std::nullopt;
    return service;
}

std::string service_text(const spi::ServElemId& service) {
    return spi_object::receiver_service_text(service);
}

spi::ServElemId id_of(const service_id& service) {
    return identifier_of<spi::ServElemId>(service);
}

}  // namespace dabspi::check

#include "tools/check/input.h"

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

#include "tools/air/calls/open_calls.h"
#include "tools/check/folder.h"
#include "tools/check/received_input.h"
#include "tools/files/input_kind.h"
#include "tools/spi/receiver_values.h"
#include "tools/spi/values.h"
#include "tools/text/utf8.h"

namespace dabspi::check {

namespace {

void note_missing(checked_input& in) {
    for (const recording_error& error : in.calls.errors)
        in.errors.push_back(error_text(in.calls, error));
}

// Objects and images are dumps of one.
bool is_body(const std::string& path) {
    std::error_code failed;
    if (!std::filesystem::is_regular_file(path, failed)) return false;
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "re"), &std::fclose);
    if (file == nullptr) return false;
    std::string beginning(kSniffedBytes, '\0');
    beginning.resize(std::fread(beginning.data(), 1, beginning.size(), file.get()));
    const input_kind kind = sniff(beginning).kind;
    return kind == input_kind::spi_object || kind == input_kind::image;
}

std::vector<checked_input> one(checked_input in) {
    std::vector<checked_input> all;
    all.push_back(std::move(in));
    return all;
}

checked_input unusable(const std::string& path, const std::string& why) {
    checked_input in;
    in.calls.name = path;
    in.errors.push_back(printable(path) + ": " + why);
    return in;
}

spi::MotDateTime this_computers_clock() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    spi::MotDateTime clock;
    clock.year = static_cast<std::uint16_t>(local.tm_year + 1900);
    clock.month = static_cast<std::uint8_t>(local.tm_mon + 1);
    clock.day = static_cast<std::uint8_t>(local.tm_mday);
    clock.hour = static_cast<std::uint8_t>(local.tm_hour);
    clock.minute = static_cast<std::uint8_t>(local.tm_min);
    return clock;
}

}  // namespace

std::string checked_input::location(std::size_t line) const {
    if (line == 0) return printable(calls.name);
    if (folder) return line < files.size() ? printable(files[line]) : printable(calls.name);
    if (!places.empty()) return printable(calls.name) + ", " + place_words(places, line);
    return printable(calls.name) + ":" + std::to_string(line);
}

checked_input input_of(recording from) {
    checked_input in;
    in.calls = std::move(from);
    note_missing(in);
    return in;
}

std::vector<checked_input> read_inputs(const std::string& path, const folder_options& options) {
    std::error_code error;
    if (options.fic.empty() && path != "-" && (std::filesystem::is_directory(path, error) || is_body(path)))
        return options.service_text.empty() || options.service
                   ? read_folders(path, options)
                   : one(unusable(path, no_service(options.service_text)));
    air::open_options how;
    how.flow = options.flow;
    how.fic = options.fic;
    how.address = options.address;
    air::opened_calls opened = air::open_calls(path, how, recording_limits::of(options.limit));
    checked_input in;
    if (!opened.error.empty()) {
        in.errors.push_back(opened.error);
    } else if (opened.is_multiplex()) {
        in = receive(opened.multiplex, path, options);
        if (options.clock || options.ensemble)
            in.errors.push_back(
                printable(in.calls.name) +
                ": it is a multiplex and says date and ensemble itself; --date and --ensemble are "
                "for folders");
        return one(std::move(in));
    } else {
        in = input_of(std::move(opened.recorded));
    }
    if (in.errors.empty() && (options.clock || !options.service_text.empty() || options.ensemble))
        in.errors.push_back(printable(in.calls.name) +
                            ": it is a call recording and says date, service and ensemble itself; "
                            "--date, --service and --ensemble are for folders");
    return one(std::move(in));
}

std::optional<spi::MotDateTime> parse_clock(const std::string& text) {
    if (text == "now" || text == "today") {
        spi::MotDateTime clock = this_computers_clock();
        if (text == "today") clock.put_time("1200");
        return clock;
    }
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

std::string service_text(const spi::ServElemId& service) {
    return spi_object::receiver_service_text(service);
}

spi::ServElemId id_of(const service_id& service) {
    return identifier_of<spi::ServElemId>(service);
}

}  // namespace dabspi::check

#include "tools/encode/local_time_options.h"

#include "tools/text/utf8.h"

namespace dabspi {

namespace {

std::string offset_fault(const std::string& text) {
    return local_offset::fixed(text)
               ? std::string()
               : in_quotes(text) + " is no offset such as +01:00 or -03:30, in half-hours up to 15:30";
}

std::string zone_fault(const std::string& text) {
    std::string error;
    return local_offset::zone(text, error) ? std::string() : error;
}

}  // namespace

std::optional<local_offset> local_time_options::value() const {
    std::string error;
    if (!offset.empty()) return local_offset::fixed(offset);
    if (!zone.empty()) return local_offset::zone(zone, error);
    return std::nullopt;
}

void add_local_time_options(CLI::App& app, local_time_options& to) {
    CLI::Option* const offset =
        app.add_option(
               "--offset", to.offset,
               "Of documents: the offset of local time, e.g. +01:00: it is coded with times in UTC, and\n"
               "times without a zone are of it. Receivers show UTC plus the coded offset")
            ->option_text("OFFSET")
            ->check(offset_fault);
    app.add_option("--zone", to.zone,
                   "The same by the system's time zone data, with summer time, e.g. Europe/London")
        ->option_text("NAME")
        ->excludes(offset)
        ->check(zone_fault);
}

}  // namespace dabspi

#include "tools/carousel/broadcast_day.h"

#include <algorithm>

#include "tools/record/plan.h"

namespace dabspi::carousel {

namespace {

constexpr std::int64_t kUnixEpochDay = 40587;  // MJD

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

}  // namespace

std::string broadcast_minute::date() const {
    return plan_minute{number}.date();
}

std::string broadcast_minute::time() const {
    return plan_minute{number}.time();
}

std::optional<broadcast_minute> parse_minute(const std::string& text) {
    const bool is_date = text.find('T') == std::string::npos;
    const auto parsed = spi_object::parse_time(text + (is_date ? "T00:00:00Z" : ":00Z"));
    if (!parsed) return std::nullopt;
    return broadcast_minute{std::int64_t{parsed->mjd} * kMinutesOfDay + parsed->hour * 60 + parsed->minute};
}

std::int64_t unix_seconds(const broadcast_minute& of) {
    return (of.number - kUnixEpochDay * kMinutesOfDay) * 60;
}

std::optional<long> day_of_date(const std::string& text) {
    if (text.size() != 8 || !std::all_of(text.begin(), text.end(), is_digit)) return std::nullopt;
    const auto minute = parse_minute(text.substr(0, 4) + "-" + text.substr(4, 2) + "-" + text.substr(6, 2));
    if (!minute) return std::nullopt;
    return minute->day();
}

}  // namespace dabspi::carousel

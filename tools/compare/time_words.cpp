#include "tools/compare/time_words.h"

#include <charconv>
#include <cstdio>
#include <ctime>

namespace dabspi::compare {

namespace {

constexpr std::int64_t kDay = 86400;

std::string date_in_utc(std::int64_t instant) {
    const std::time_t time = static_cast<std::time_t>(instant);
    std::tm parts{};
    ::gmtime_r(&time, &parts);
    char text[32];
    return {text, std::strftime(text, sizeof text, "%Y-%m-%d", &parts)};
}

// "06:05", or "06:05:30" where that is wanted.
std::string clock_in_utc(std::int64_t instant, bool seconds) {
    const auto of_day = static_cast<int>((instant % kDay + kDay) % kDay);
    char text[32];
    std::snprintf(text, sizeof text, seconds ? "%02d:%02d:%02d" : "%02d:%02d", of_day / 3600,
                  of_day / 60 % 60, of_day % 60);
    return text;
}

}  // namespace

std::string date_text(long day) {
    return date_in_utc(static_cast<std::int64_t>(day) * kDay);
}

std::string clock_text(std::int64_t instant, long day) {
    const std::int64_t midnight = static_cast<std::int64_t>(day) * kDay;
    const bool other_day = instant < midnight || instant >= midnight + kDay;
    return (other_day ? date_in_utc(instant) + " " : std::string()) +
           clock_in_utc(instant, instant % 60 != 0) + "Z";
}

std::string utc_text(std::int64_t instant) {
    return date_in_utc(instant) + "T" + clock_in_utc(instant, true) + "Z";
}

std::string span_text(std::int64_t seconds) {
    if (seconds == 0) return "0 s";
    std::string text;
    const auto add = [&](std::int64_t count, const char* unit) {
        if (count != 0) text += (text.empty() ? "" : " ") + std::to_string(count) + unit;
    };
    add(seconds / 3600, " h");
    add(seconds / 60 % 60, " min");
    add(seconds % 60, " s");
    return text;
}

std::optional<std::int64_t> parse_span(std::string_view text) {
    std::int64_t count = 0;
    const auto [end, failed] = std::from_chars(text.data(), text.data() + text.size(), count);
    if (failed != std::errc() || count < 0 || count > kDay) return std::nullopt;
    const std::string_view unit = text.substr(static_cast<std::size_t>(end - text.data()));
    const std::int64_t seconds = unit == "s" ? 1 : unit == "min" ? 60 : unit == "h" ? 3600 : 0;
    if (seconds == 0 || count * seconds > kDay) return std::nullopt;
    return count * seconds;
}

}  // namespace dabspi::compare

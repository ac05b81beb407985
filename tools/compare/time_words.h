// Times and spans in words, and spans as they are typed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace dabspi::compare {

// "2026-03-10"; 1970-01-01 is day 0.
std::string date_text(long day);
// "06:05Z", with seconds where there are any; "2026-03-09 23:00Z" when it is not of that day in UTC.
std::string clock_text(std::int64_t instant, long day);
// "2026-03-10T06:05:00Z"
std::string utc_text(std::int64_t instant);
// "1 h 5 min"; "0 s"
std::string span_text(std::int64_t seconds);
// "30s", "2min", "1h", in seconds; at most a day. Nothing for other texts.
std::optional<std::int64_t> parse_span(std::string_view text);

}  // namespace dabspi::compare

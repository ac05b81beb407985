// How far local time is ahead of UTC: a fixed offset, or what the system's time zone data says (TZif, RFC
// 8536, in $TZDIR or /usr/share/zoneinfo). Nothing of the process is changed or asked (no TZ variable): any
// thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dabspi {

// Offsets are in seconds, positive east of Greenwich; moments in seconds since 1970-01-01T00:00Z.
class local_offset {
 public:
    // "+01:00", "-09:30", "Z": a whole number of half-hours, up to 15:30. Nothing for other texts.
    static std::optional<local_offset> fixed(std::string_view text);
    // "Europe/London". Nothing, and `error` filled, when there is no such zone, or no data at all.
    static std::optional<local_offset> zone(const std::string& name, std::string& error);
    // The same of a file's content; nothing when that is no TZif.
    static std::optional<local_offset> tzif(std::string_view content);

    std::int64_t at(std::int64_t instant) const;
    // Of a clock that shows `local`, seconds since 1970-01-01T00:00 local time. A time that comes twice is
    // the first of both; one that is left out is counted on from before.
    std::int64_t at_local(std::int64_t local) const;

    // As it was given, for messages.
    const std::string& name() const { return name_; }

 private:
    // Of the rule that goes on for ever: POSIX, "GMT0BST,M3.5.0/1,M10.5.0".
    struct change_day {
        char kind = 'M';  // M month, week and weekday; J day 1 to 365 without leap days; 0 day 0 to 365
        int month = 0, week = 0, day = 0;
        std::int64_t time = 7200;  // of that day, local
    };
    struct rule {
        std::int64_t standard = 0;
        std::int64_t summer = 0;
        bool has_summer = false;
        change_day begin, end;
    };
    struct transition {
        std::int64_t instant = 0;
        std::int64_t offset = 0;  // from then on
    };

    static std::optional<rule> read_rule(std::string_view text);
    static std::int64_t moment_of(const change_day& day, int year);
    static std::int64_t by_rule(const rule& of, std::int64_t instant);

    std::string name_;
    std::int64_t first_ = 0;  // before all transitions
    std::vector<transition> transitions_;
    std::optional<rule> rule_;  // behind all transitions
};

}  // namespace dabspi

// One call of the listener, as the tools pass it on: the same record for both interfaces of the library.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "src/parse/mot_date_time.h"
#include "tools/recording/recording.h"

namespace dabspi {

struct programme {
    spi::MotDateTime start;      // local time
    std::uint16_t duration = 0;  // minutes
    std::string name;            // the broadcast's bytes, not always UTF-8
};

struct now_next {
    programme now;
    programme next;
};

struct station_logo {
    service_id station;
    std::int32_t format = 0;  // 0 unknown, 1 JPEG, 2 PNG
    std::int32_t size_code = 0;
    std::string file;  // inside the logo root
};

// Core interface only: the host-facing layer never passes whole schedules on.
struct programme_info {
    service_id service;
    programme item;
};

using notification = std::variant<now_next, station_logo, programme_info>;

// What the host had set when a notification came. Unset where the recording has not set it yet, and where
// nobody can tell: a replay that does not wait after each call has no such moment.
struct notification_time {
    std::optional<spi::MotDateTime> clock;
    std::optional<service_id> service;
    std::size_t line = 0;  // of the recording: the call that led to it; 0 where nobody can tell
};

}  // namespace dabspi

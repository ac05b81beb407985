// Whole SPI objects from plain records: what a broadcaster says (names, times, services, logos) without its
// coding.
//
// Independent of the code under test, as all of the builder. Empty texts and unset optionals leave their
// element or attribute out. Times are given in UTC together with the local time offset, as they are coded;
// durations in seconds; sizes in pixels. Attributes stand before child elements, and a service's bearers
// before its logos.
#pragma once

#include "testkit/spi_builder.h"

namespace spi_builder {

struct service_id {
    std::uint8_t ecc = 0;
    std::uint16_t eid = 0;
    std::uint32_t sid = 0;
    std::uint8_t scids = 0;
};

struct utc_time {
    std::uint32_t day = 0;  // Modified Julian Date
    unsigned hour = 0;
    unsigned minute = 0;
    std::optional<int> offset_half_hours = {};
    std::optional<utc_fraction> fraction = {};
};

// The time that a clock with this offset shows as `hour`:`minute` on the local day `day`. Hour 24 is the next
// day's 0.
utc_time local_time(std::uint32_t day, unsigned hour, unsigned minute, int offset_half_hours);

struct names {
    std::string short_name;
    std::string medium_name;
    std::string long_name;
};

struct programme_data {
    names name;
    utc_time start;
    std::uint16_t duration = 0;  // seconds
    std::optional<std::uint32_t> short_id = {};
    std::vector<service_id> bearers = {};
};

struct schedule_data {
    std::optional<service_id> scope = {};  // the service scope
    std::optional<utc_time> scope_start = {};
    std::optional<utc_time> scope_stop = {};
    std::vector<programme_data> programmes = {};
};

using tokens = std::vector<std::pair<std::uint8_t, std::string>>;

struct logo_data {
    std::string mime;
    std::string url;
    std::optional<std::uint8_t> type = {};  // logo_type
    std::optional<std::uint16_t> width = {};
    std::optional<std::uint16_t> height = {};
};

struct service_data {
    names name;
    std::vector<service_id> bearers = {};
    std::vector<logo_data> logos = {};
};

bytes content_id(const service_id& id);
bytes time_point(const utc_time& time);
bytes name_elements(const names& name);  // short, medium, long: those that are not empty

bytes programme(const programme_data& data);
bytes schedule(const schedule_data& data);
bytes pi_object(const std::vector<schedule_data>& schedules, const tokens& table = {});

bytes multimedia(const logo_data& data);
bytes service(const service_data& data);
// One ensemble; its own identifier is written from `ecc` and `eid`.
bytes si_object(std::uint8_t ecc, std::uint16_t eid, const std::vector<service_data>& services,
                const tokens& table = {});

}  // namespace spi_builder

// What attributes and texts of binary SPI objects mean (ETSI TS 102 371), and their coding in bytes and in
// the texts of XML (ETSI TS 102 818), both ways. Pure functions, any thread.
//
// decode_*  bytes -> value. Never fails: what is missing counts as 0, and what is wrong is added to
// `problems`,
//           with offsets counted from the first byte given.
// encode_*  value -> bytes. The values that the parse functions give always have room; others are cut.
// *_text    value -> the text of XML.
// parse_*   the text of XML -> value; nothing when the text does not say one.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/spi/byte_view.h"
#include "tools/spi/problem.h"

namespace dabspi::spi_object {

constexpr std::int64_t kMinutesOfDay = 1440;

// A time. In XML "2026-03-10T07:00:00+01:00": local time, with the offset.
struct time_value {
    std::uint32_t mjd = 0;  // day of the UTC date; 1858-11-17 is day 0; 17 bits
    unsigned hour = 0;      // UTC
    unsigned minute = 0;
    unsigned second = 0;
    unsigned millisecond = 0;
    std::optional<int>
        offset;  // half-hours that local time is ahead of UTC, -31 to 31; none: UTC alone ("Z")
};
bool operator==(const time_value& a, const time_value& b);

time_value decode_time(byte_view from, std::vector<problem>& problems);
// Seconds and milliseconds are coded only where they are not both 0 (or `long_form` asks for them).
bytes encode_time(const time_value& value, bool long_form = false);
std::string time_text(const time_value& value);
std::string utc_text(const time_value& value);    // "2026-03-10T06:00:00Z"
std::string local_text(const time_value& value);  // "2026-03-10 07:00", with seconds if there are any
// Accepts a fraction of a second (cut to milliseconds), "Z", an offset in half-hours, or none of both, which
// is taken as UTC. Years 1858 to 2217 only.
std::optional<time_value> parse_time(std::string_view text);

// Durations are whole seconds. In XML ISO 8601, "PT1H30M"; parsed are weeks, days, hours, minutes, seconds.
std::string duration_text(std::uint32_t seconds);
// Nothing also beyond 2^32 seconds. The coding has 16 bits: see whether the value fits.
std::optional<std::uint32_t> parse_duration(std::string_view text);

// A service component. In XML "dab:ce1.c185.c221.0": country nibble of the SId and ECC, EId, SId, SCIdS; with
// an X-PAD application type as a fifth part of three hexadecimal digits.
struct content_id {
    bool ensemble_coded = true;  // false: ECC and EId are left out (2008 edition), and read 0 here
    std::uint8_t ecc = 0;
    std::uint16_t eid = 0;
    std::uint32_t sid = 0;
    bool long_sid = false;  // 32 bits
    std::uint8_t scids = 0;
    std::optional<std::uint8_t> xpad;  // user application type, 5 bits
};
bool operator==(const content_id& a, const content_id& b);

// `receiver_sees`: the bytes from the first on that the library bounds its reading by, where that is not the
// attribute.
content_id decode_content_id(byte_view from, std::vector<problem>& problems);
content_id decode_content_id(byte_view from, byte_view receiver_sees, std::vector<problem>& problems);
bytes encode_content_id(const content_id& value);
std::string content_id_text(const content_id& value);
// The country nibble must be that of the SId.
std::optional<content_id> parse_content_id(std::string_view text);

// In XML "e1.ce15".
struct ensemble_id {
    std::uint8_t ecc = 0;
    std::uint16_t eid = 0;
};
bool operator==(const ensemble_id& a, const ensemble_id& b);

ensemble_id decode_ensemble_id(byte_view from, std::vector<problem>& problems);
bytes encode_ensemble_id(const ensemble_id& value);
std::string ensemble_id_text(const ensemble_id& value);
// Also with the country nibble of the EId in front, as in "ce1.ce15".
std::optional<ensemble_id> parse_ensemble_id(std::string_view text);

// A genre. In XML "urn:tva:metadata:cs:ContentCS:2005:3.6.8". The coding holds no year: 2005 is written, any
// is accepted.
struct genre_value {
    std::uint8_t scheme = 0;           // 1 IntentionCS ... 8 AtmosphereCS
    std::vector<std::uint8_t> levels;  // up to three
};
bool operator==(const genre_value& a, const genre_value& b);

genre_value decode_genre(byte_view from, std::vector<problem>& problems);
bytes encode_genre(const genre_value& value);
std::string genre_text(const genre_value& value);
std::optional<genre_value> parse_genre(std::string_view text);
// "ContentCS"; null for an unknown scheme.
const char* genre_scheme_name(std::uint8_t scheme);

// A place. In XML "51.473935 -2.508109", latitude and longitude; several with blanks between.
struct position {
    std::int32_t latitude = 0;   // 1/92,000 degree, 24 bits
    std::int32_t longitude = 0;  // 1/46,000 degree, 24 bits
};
bool operator==(const position& a, const position& b);

std::vector<position> decode_positions(byte_view from, std::vector<problem>& problems);
bytes encode_positions(const std::vector<position>& value);
std::string positions_text(const std::vector<position>& value);
// Nothing for an odd count of numbers, or one out of -90..90 and -180..180.
std::optional<std::vector<position>> parse_positions(std::string_view text);

}  // namespace dabspi::spi_object

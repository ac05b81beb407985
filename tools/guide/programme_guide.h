// A programme guide: what the SPI objects of one or several ensembles say of services and programmes, in
// full, as it was broadcast, and not only what the library reads. Plain values.
//
// Texts are valid UTF-8 that XML may carry: what was not was replaced by U+FFFD, and counted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "tools/recording/recording.h"
#include "tools/spi/values.h"

namespace dabspi::guide {

struct text {
    std::string value;
    std::string language;  // as coded, "en"; empty: not said
};

// Short ones have up to 8 (names) or 180 characters (descriptions), medium names up to 16 (TS 102 818).
struct texts {
    std::vector<text> short_texts;
    std::vector<text> medium_texts;  // names only
    std::vector<text> long_texts;

    // Of the longest form there is; empty when there is none.
    const std::vector<text>& longest() const;
    // The first of these; null when there is none.
    const text* first() const;
};

struct picture {
    std::string url;
    std::string mime;
    std::string type;    // "logo_colour_square"; empty: not said
    unsigned width = 0;  // pixels; 0: not said
    unsigned height = 0;
    std::shared_ptr<const bytes> content;  // null: the input does not have it
};

struct link {
    std::string uri;
    std::string mime;
    std::string description;
};

struct described {
    texts names;
    texts descriptions;
    std::vector<spi_object::genre_value> genres;
    std::vector<std::string> keywords;
    std::vector<picture> pictures;
    std::vector<link> links;
    std::string language;  // of programmes
};

struct programme : described {
    std::int64_t start = 0;      // seconds since 1970-01-01T00:00Z
    std::optional<int> offset;   // half-hours that local time is ahead of UTC, as coded
    std::uint32_t duration = 0;  // seconds
    std::string id;              // a CRID, as coded
    std::optional<std::uint32_t> short_id;
    // Where it was read: in programme_guide::sources, and the byte of its element there.
    std::size_t source = 0;
    std::uint32_t place = 0;

    std::int64_t stop() const { return start + duration; }
    // Seconds since 1970-01-01T00:00 by the clock on the wall.
    std::int64_t local_start() const { return start + offset.value_or(0) * 1800; }
    long local_day() const;  // 1970-01-01 is day 0
};

struct service_id {
    std::uint8_t ecc = 0;  // 0: no object says it
    std::uint32_t sid = 0;
    std::uint8_t scids = 0;

    bool operator<(const service_id& other) const {
        return std::tie(ecc, sid, scids) < std::tie(other.ecc, other.sid, other.scids);
    }
    bool operator==(const service_id& other) const {
        return std::tie(ecc, sid, scids) == std::tie(other.ecc, other.sid, other.scids);
    }
    bool operator!=(const service_id& other) const { return !(*this == other); }
    // "e1.c221.0"
    std::string text() const;
};

struct ensemble_id {
    std::uint8_t ecc = 0;
    std::uint16_t eid = 0;

    bool operator<(const ensemble_id& other) const {
        return std::tie(ecc, eid) < std::tie(other.ecc, other.eid);
    }
    // "e1.c185"
    std::string text() const;
};

// One that is on several ensembles is there once.
struct service : described {
    service_id id;
    std::set<ensemble_id> ensembles;
    bool announced = false;             // service information has it
    std::vector<programme> programmes;  // by their start; at most one begins at a time
};

struct guide_counts {
    std::size_t objects = 0;
    std::size_t replaced_objects = 0;     // a later version of the same content name came
    std::size_t malformed_objects = 0;    // read as far as they can be
    std::size_t repaired_characters = 0;  // ill-formed, or not for XML
    std::size_t without_service = 0;      // programmes that name none
    std::size_t without_time = 0;         // programmes without a time, or of unknown times
    std::size_t same_start = 0;           // programmes of another object that begin at the same time
    std::size_t images = 0;
    std::size_t unused_images = 0;  // that nothing announces
};

struct programme_guide {
    std::map<ensemble_id, texts> ensembles;
    std::vector<service> services;                      // by their identifiers
    std::vector<std::shared_ptr<const bytes>> sources;  // the objects
    guide_counts counts;

    const service* find(const service_id& id) const;
};

// The name people know it by: the longest, else its identifier.
std::string name_of(const service& of);
// The longest name, or an empty text.
std::string name_of(const programme& of);

}  // namespace dabspi::guide

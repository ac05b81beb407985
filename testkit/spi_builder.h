// Builds binary SPI objects (ETSI TS 102 371) for tests, for the recordings under examples/ and for fuzzing.
//
// It is the other half of the tests' oracle: it shares no line with the code that reads the objects and
// includes nothing from src/ but the table of tags, so that both sides would have to be wrong in the same way
// to agree on something wrong. It can also build what no broadcaster should send (lengths in an unnecessarily
// long form, lengths that lie, objects cut short). Everything is a plain function over bytes; nothing is
// kept, any thread may call it. A value that the coding has no room for throws std::invalid_argument (a
// length beyond 24 bits: std::length_error): a mistake in a test shows where it is. Whole objects from plain
// records are in spi_builder_objects.h.
//
//   const bytes object = elem(tag::service_information, {elem(tag::ensemble, {elem(tag::service, {
//       elem(tag::short_name, {text("R4")}),
//       elem(tag::medium_name, {text("Radio 4")})})})});
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "src/parse/reader/spi_tags.h"

namespace spi_builder {

// A test holds these numbers to the standard's.
namespace tag = spi::tag;
namespace attribute = spi::attribute;
using spi::logo_colour_rectangle;
using spi::logo_colour_square;
using spi::logo_type;
using spi::logo_unrestricted;

using bytes = std::vector<std::uint8_t>;

// One after the other, nothing between.
bytes join(std::initializer_list<bytes> parts);
bytes join(const std::vector<bytes>& parts);

// The first `size` bytes (all of them if there are fewer): an object cut short on its way.
bytes cut(const bytes& whole, std::size_t size);

// Numbers, most significant byte first.
bytes u8(std::uint32_t value);
bytes u16(std::uint32_t value);
bytes u24(std::uint32_t value);
bytes u32(std::uint32_t value);

// The bytes of a text as they stand. Token codes are written into the text itself: str("\x01 at Ten").
bytes str(std::string_view value);

// Lengths: the shortest form that holds the value, or the form that is asked for.
bytes length(std::size_t value);
bytes length_fe(std::size_t value);
bytes length_ff(std::size_t value);

// Element or attribute with the shortest length.
bytes elem(std::uint8_t tag, const bytes& content);
bytes elem(std::uint8_t tag, std::initializer_list<bytes> children);
bytes elem(std::uint8_t tag, const std::vector<bytes>& children);
bytes attr(std::uint8_t tag, const bytes& value);

// The same with the length in two bytes (after 0xFE) or in three (after 0xFF), however short the content is.
bytes elem_fe(std::uint8_t tag, const bytes& content);
bytes elem_ff(std::uint8_t tag, const bytes& content);

// States `stated` as its length, whatever the content's own length is.
bytes elem_stating(std::uint8_t tag, std::size_t stated, const bytes& content);

// The text element (0x01) of a name or a description.
bytes text(std::string_view value);

// A token table element: code and text of each entry, in the order given. Codes are not checked and may
// repeat.
bytes token_table(const std::vector<std::pair<std::uint8_t, std::string>>& entries);

// Content ID with the ensemble flag set; the SId takes 32 bits if it does not fit in 16.
bytes content_id(std::uint8_t ecc, std::uint16_t eid, std::uint32_t sid, std::uint8_t scids = 0);
// The same with 32 bits for the SId in every case.
bytes content_id_32(std::uint8_t ecc, std::uint16_t eid, std::uint32_t sid, std::uint8_t scids = 0);

// Modified Julian Date of a day of the Gregorian calendar (1858-11-17 is day 0).
std::uint32_t mjd(int year, unsigned month, unsigned day);

// Seconds and milliseconds of the long form of UTC.
struct utc_fraction {
    unsigned second = 0;
    unsigned millisecond = 0;
};

// A time: day and UTC hour and minute; a local time offset in half-hours (-31 to 31) and the long form only
// if they are given.
bytes time_point(std::uint32_t day, unsigned hour, unsigned minute,
                 std::optional<int> offset_half_hours = std::nullopt,
                 std::optional<utc_fraction> fraction = std::nullopt);

}  // namespace spi_builder

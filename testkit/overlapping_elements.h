// Objects that are made to cost: elements that claim more than their parents hold, so that closing the parent
// moves back and the same bytes are read again. Like the rest of the builder it knows nothing of src/.
#pragma once

#include <cstddef>

#include "testkit/spi_builder.h"

namespace spi_builder {

void append(bytes& object, const bytes& more);

// The two bytes of a length (after 0xFE) that reaches from behind them to the end of an object of `total`
// bytes, or as far as two bytes do; the three bytes of one (after 0xFF).
bytes length_to(std::size_t total, const bytes& so_far);
bytes length_ff_to(std::size_t total, const bytes& so_far);

// `count` times an epg of six bytes with a schedule that reaches to the end of the object, and a programme
// that claims the beginning of the next one. Read by the letter: count * (count + 1) / 2 programmes, without
// a time. `head` stands before them.
bytes nested_schedules(std::size_t count, const bytes& head);

// `count` times a service information element whose ensemble, media description and URL all reach to the end
// of the object. Read by the letter: count * (count + 1) * (count + 2) / 6 announcements.
bytes nested_logos(std::size_t count);

// Schedules as above whose programmes have a name that reaches to the end of the object, too, and begins with
// the token 0x01 twice. `head` stands before them.
enum class reach { kTwoBytes, kThreeBytes };  // of the lengths
bytes nested_names(std::size_t count, const bytes& head, reach lengths = reach::kTwoBytes);
// What one of them takes.
std::size_t size_of_nested_name(reach lengths = reach::kTwoBytes);

}  // namespace spi_builder

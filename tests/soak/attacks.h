// Hostile broadcasts that make the library keep as much as its design lets them: each a sequence of MOT
// objects, as compact as the coding allows.
#pragma once

#include <cstdint>
#include <string>

#include "testkit/spi_builder.h"

namespace soak {

struct hostile_object {
    std::string name;
    std::uint8_t content_type;
    std::uint16_t content_subtype;
    spi_builder::bytes bytes;
};

// All of them are on this ensemble.
constexpr std::uint16_t kHostileEnsemble = 0xC181;

// The `serial`th object of each; each object is one that was not there before. `day` is today's MJD.

// A service of its own, with two days full of one-minute programmes without names.
hostile_object full_service(unsigned serial, std::uint32_t day);
// The same programmes read again and again for other services, as far as the budget of a body goes.
hostile_object shared_schedule(unsigned serial, std::uint32_t day);
// A thousand services with one programme each.
hostile_object many_services(unsigned serial, std::uint32_t day);
// One programme with a name of `tokens` bytes, each of which stands for 255. Services of their own.
hostile_object long_name(unsigned serial, std::uint32_t day, std::size_t tokens);
// Programmes whose names all reach to the end of the body, over the same token bytes.
hostile_object shared_long_names(unsigned serial, std::uint32_t day);
// Announcements of logos without a name: the smallest there are.
hostile_object nameless_logos(unsigned serial);
// Announcements of logos whose names are all different.
hostile_object named_logos(unsigned serial);
// Announcements whose names all reach to the end of the body, over the same token bytes.
hostile_object shared_logo_names(unsigned serial);
// An object of no bytes, of which only the name is kept.
hostile_object empty_object(unsigned serial);
// Five hundred announcements of one and the same logo, and the image of one byte that matches them all.
hostile_object one_logo_announced_often(unsigned serial);
hostile_object image_of_the_one_logo();

// What an object takes on air: its body, its name, and about 16 bytes of MOT header. The transport around it
// (segments, data groups, packets) adds some eight per cent; not counted, so that figures err upwards.
std::size_t on_air(const hostile_object& object);

}  // namespace soak

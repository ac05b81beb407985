// What goes round in a carousel: the data groups of every entity of one version, in directory mode or in
// header mode (EN 301 234, 7.1 and 7.2).
//
// A carousel_maker is used on one thread and keeps the transport identifiers from version to version. What
// cannot be sent throws std::length_error with a text for the user, and the version before stays good.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "tools/transmit/mot/directory.h"
#include "tools/transmit/mot/segments.h"
#include "tools/transmit/mot/sent_object.h"
#include "tools/transmit/mot/transport_ids.h"

namespace dabspi::transmit {

enum class carousel_mode : std::uint8_t { directory, header };
enum class directory_form : std::uint8_t { plain, compressed, both };

struct carousel_settings {
    carousel_mode mode = carousel_mode::directory;
    directory_form directory = directory_form::plain;
    name_charset charset = name_charset::utf_8;
    std::size_t segment_size = 505;  // bytes, of directories, headers and bodies
};

struct sent_entity {
    group_type type = group_type::body;
    std::uint16_t transport_id = 0;
    std::optional<std::size_t> object;  // which one it belongs to, none: all of them
    std::size_t size = 0;               // bytes
    std::vector<bytes> groups;          // without continuity and CRC

    std::size_t bytes_of_groups() const;
};

struct sent_carousel {
    std::vector<sent_entity> entities;  // the directory first; a header before its body
    std::size_t directory_size = 0;     // bytes, plain; 0 in header mode
};

class carousel_maker {
 public:
    explicit carousel_maker(const carousel_settings& settings) : settings_(settings) {}

    // `period_tenths`: after how long every object has come again, for the directory.
    sent_carousel make(const std::vector<sent_object>& objects, std::uint32_t period_tenths = 0);

 private:
    void add(sent_carousel& to, group_type type, std::uint16_t id, std::optional<std::size_t> object,
             byte_view entity) const;

    const carousel_settings settings_;
    transport_ids object_ids_;
    transport_ids directory_ids_;
};

}  // namespace dabspi::transmit

// What a carousel carried and what of it was dropped, by cause.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "tools/air/packets/packet_counts.h"

namespace dabspi::air {

enum class carousel_drop : std::uint8_t {
    // Data groups.
    group_crc,
    group_ill_formed,         // too short, too long, a field that does not fit
    group_without_segment,    // no segment number or no transport identifier
    group_of_other_type,      // not one of MOT's
    scrambled,                // under conditional access: groups of type 5, and bodies whose header says so
    segment_size,             // shorter than its header says
    header_beside_directory,  // a header while there is a directory
    // Entities: all segments that were held of them.
    other_version,        // a segment differs from the one held under its number
    misfitting_segments,  // a segment's size or number does not go with those held
    memory_limit,
    // Headers and directories.
    header_ill_formed,
    update_without_object,  // a header update for an object that there is not
    directory_ill_formed,
    directory_not_unpacked,  // damaged, or compressed in a way that is not gzip
    directory_too_large,
    objects_beyond_limit,  // listed, but more than are kept
    listed_twice,          // under a transport identifier that the directory has already
    // Objects, each time they were received whole.
    body_size,  // not the header's
    without_name,
    unknown_compression,
    not_unpacked,  // damaged
    too_large_unpacked,
    unlisted,  // a body without directory entry or header; it is kept for a while
    count      // how many causes there are
};

// In plain words: "data groups with a wrong CRC".
drop_words words_of(carousel_drop cause);
inline const char* drop_text(carousel_drop cause) {
    return words_of(cause).text;
}

struct carousel_counts {
    std::uint64_t groups = 0;
    std::uint64_t bytes = 0;  // of these data groups
    std::uint64_t ca_messages = 0;
    std::uint64_t header_updates = 0;
    std::uint64_t objects = 0;  // received whole and usable, handed on or not
    std::array<std::uint64_t, static_cast<std::size_t>(carousel_drop::count)> dropped{};

    std::uint64_t of(carousel_drop cause) const { return dropped[static_cast<std::size_t>(cause)]; }
    void add(carousel_drop cause, std::uint64_t count = 1) {
        dropped[static_cast<std::size_t>(cause)] += count;
    }
};

}  // namespace dabspi::air

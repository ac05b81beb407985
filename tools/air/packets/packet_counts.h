// What packet mode carried and what of it was dropped, by cause.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace dabspi::air {

// What a cause of loss is called.
struct drop_words {
    const char* key;   // of JSON
    const char* text;  // for a person
};

enum class packet_drop : std::uint8_t {
    wrong_crc,         // cells at which no packet with a right CRC begins
    missing_cell,      // cells of logical frames that are missing
    ill_formed,        // packets whose useful length reaches beyond their field
    lost_packets,      // data groups ended by a continuity value that is not the next one
    repeated_packet,   // data groups ended by the same continuity value again
    without_begin,     // packets of a data group whose beginning was not received
    unfinished_group,  // data groups ended by the beginning of another one, or by the end of the input
    group_too_long,    // data groups longer than a data group can be
    memory_limit,      // data groups for which there was no memory
    count              // how many causes there are
};

// In plain words: "cells with a wrong CRC".
drop_words words_of(packet_drop cause);
inline const char* drop_text(packet_drop cause) {
    return words_of(cause).text;
}

struct packet_counts {
    std::uint64_t cells = 0;
    std::uint64_t packets = 0;  // with a right CRC, padding and commands included
    std::uint64_t padding = 0;
    std::uint64_t commands = 0;
    std::uint64_t groups = 0;  // data groups handed on
    std::array<std::uint64_t, static_cast<std::size_t>(packet_drop::count)> dropped{};

    std::uint64_t fec_packets = 0;
    std::uint64_t fec_sets = 0;           // found
    std::uint64_t fec_sets_used = 0;      // of those, needed because something was damaged
    std::uint64_t fec_sets_repaired = 0;  // of those, everything could be corrected
    std::uint64_t fec_sets_absent = 0;    // where one was expected
    std::uint64_t repaired_bytes = 0;

    std::uint64_t of(packet_drop cause) const { return dropped[static_cast<std::size_t>(cause)]; }
    void add(packet_drop cause, std::uint64_t count = 1) {
        dropped[static_cast<std::size_t>(cause)] += count;
    }
};

// Of one packet address.
struct address_counts {
    std::uint16_t address = 0;
    std::uint64_t packets = 0;  // commands included
    std::uint64_t cells = 0;
    std::uint64_t groups = 0;
    std::uint64_t groups_dropped = 0;
};

}  // namespace dabspi::air

// The MOT directory (EN 301 234, 7.2) as it is sent, plain and compressed. Pure functions; more objects than
// a directory can list throw std::length_error.
#pragma once

#include <cstdint>
#include <vector>

#include "tools/transmit/mot/parameters.h"

namespace dabspi::transmit {

struct directory_entry {
    std::uint16_t transport_id = 0;
    bytes name;    // ContentName as it stands in the header: what the entries are sorted by
    bytes header;  // the whole MOT header
};

// Of each object that is listed, but not of directories: a receiver needs as long at most for one round.
struct directory_facts {
    std::uint32_t period_tenths = 0;  // 0.1 s; 0: not told
    std::uint16_t segment_size = 0;   // of all bodies; 0: not told
};

// Entries in the order of their names, which SortedHeaderInformation announces.
bytes directory_bytes(std::vector<directory_entry> entries, const directory_facts& facts);

// The same as it is sent in groups of type 7.
bytes compressed_directory_bytes(byte_view plain);

}  // namespace dabspi::transmit

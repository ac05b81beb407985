// What a recording's container gave, and all that it did not give, by cause.
#pragma once

#include <cstdint>
#include <vector>

namespace dabspi::air {

struct container_statistics {
    std::uint64_t frames = 0;          // handed on
    std::uint64_t frames_damaged = 0;  // of these, those that are marked so

    // By the frames' own count; what was dropped below is missing here as well.
    std::uint64_t frames_missing = 0;
    std::uint64_t gaps = 0;  // places where frames are missing

    std::uint64_t bytes_skipped = 0;  // that belong to no frame and no packet
    std::uint64_t wrong_sync = 0;  // frames without their synchronisation word, and places where it was lost
    std::uint64_t cut_short = 0;   // frames and packets that the input ends in
    std::uint64_t layout_wrong = 0;    // frames dropped: their parts do not fit into them
    std::uint64_t header_dropped = 0;  // frames dropped: wrong header CRC, and another layout than before
    std::uint64_t header_crc_wrong = 0;
    std::uint64_t body_crc_wrong = 0;
    std::uint64_t marked_as_errored = 0;  // by the error level of the frame itself
    std::uint64_t count_repeated = 0;     // frames with the same count as the one before

    std::uint64_t af_crc_wrong = 0;      // AF packets dropped
    std::uint64_t af_malformed = 0;      // AF packets dropped: TAG items that do not fit
    std::uint64_t af_without_frame = 0;  // AF packets without a `deti` item
    std::uint64_t af_repeated = 0;       // AF packets dropped: the same once more
    std::uint64_t pf_header_crc_wrong = 0;
    std::uint64_t pf_unusable = 0;       // fragments dropped: too large, or unlike others of their packet
    std::uint64_t pf_repeated = 0;       // fragments dropped: held already, or their packet is done with
    std::uint64_t pf_missing = 0;        // fragments that never came, of packets of which others did
    std::uint64_t pf_sets_repaired = 0;  // packets repaired by Reed-Solomon
    std::uint64_t pf_sets_lost = 0;      // packets that could not be put together
    std::uint64_t pf_sets_missing = 0;   // packets of which no fragment came

    std::uint64_t captured_other = 0;      // captured packets that are no UDP, or of another flow
    std::uint64_t captured_cut = 0;        // captured packets that are not there as a whole
    std::uint64_t captured_fragments = 0;  // parts of datagrams that were lost or cannot be put together
};

// One figure of the statistics, for reports.
struct named_counter {
    const char* key;   // of JSON
    const char* text;  // for a person
    std::uint64_t container_statistics::*value;
};

// All that tell of something lost, damaged or left out.
const std::vector<named_counter>& loss_counters();

}  // namespace dabspi::air

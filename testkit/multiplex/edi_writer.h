// EDI (TS 102 693 over TS 102 821) of logical frames: AF packets, and PF fragments without and with
// Reed-Solomon.
#pragma once

#include <optional>
#include <vector>

#include "testkit/multiplex/logical_frame.h"

namespace multiplex_builder {

struct af_options {
    bool crc = true;        // false: CF is 0
    bool with_time = true;  // ATSTF
    bool unknown_items = true;
};

bytes af_packet(const logical_frame& of, std::uint16_t sequence, const af_options& options = {});

struct pf_options {
    std::size_t fragment_size = 200;  // without FEC: at most
    bool fec = false;
    unsigned fragments_to_lose = 2;       // with FEC: what it protects against; decides the fragments' size
    std::optional<std::uint16_t> source;  // with it there are addresses
};

std::vector<bytes> pf_fragments(const bytes& packet, std::uint16_t sequence, const pf_options& options = {});

// A packet or fragment as files may hold it: in a `fio_` item with its time.
bytes in_file_framing(const bytes& packet);

// One after another.
bytes af_stream(const std::vector<logical_frame>& frames, const af_options& options = {});
bytes pf_stream(const std::vector<logical_frame>& frames, const pf_options& options = {});
bytes framed_stream(const std::vector<logical_frame>& frames);

}  // namespace multiplex_builder

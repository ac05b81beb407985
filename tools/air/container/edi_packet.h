// What stands at a place of an EDI stream (TS 102 821): an AF packet, a PF fragment, or framing of files
// around them. Looks at headers only; pure.
#pragma once

#include <cstddef>
#include <cstdint>

#include "tools/spi/byte_view.h"

namespace dabspi::air {

using spi_object::byte_view;

constexpr std::size_t kAfHeader = 10;
constexpr std::size_t kTagHeader = 8;
constexpr std::size_t kEdiCrc = 2;

// What has to be seen for telling them apart.
constexpr std::size_t kMostEdiHeader = 20;
// Of an AF packet, as a whole. The largest frame takes a tenth of it.
constexpr std::size_t kMostAfPacket = 64 * 1024;

enum class edi_kind {
    nothing,         // none of these
    wrong_fragment,  // a PF fragment with a wrong header CRC
    af_packet,
    pf_fragment,
    file_framing,  // passed over: the TAG items of files that hold packets
};

struct edi_unit {
    edi_kind kind = edi_kind::nothing;
    std::size_t size = 0;  // as a whole
};

edi_unit edi_at(byte_view here);

struct pf_fragment {
    std::uint16_t sequence = 0;  // Pseq: the AF packet that it is part of
    std::uint32_t index = 0;
    std::uint32_t count = 0;
    bool fec = false;
    std::size_t chunk_data = 0;  // RSk, with FEC
    std::size_t filling = 0;     // RSz, with FEC
    byte_view payload;
};

// Of a place that edi_at() has found to be a fragment, as a whole.
pf_fragment read_pf_fragment(byte_view whole);

}  // namespace dabspi::air

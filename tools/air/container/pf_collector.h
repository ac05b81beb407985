// Puts AF packets together from their fragments (TS 102 821, PFT layer), which may come in any order, more
// than once, or not at all. Packets come out in their order; one with a fragment missing is waited for until
// fragments of the fourth one after it have come.
//
// Memory: at most kMostSets packets of kMostSetBytes; fragments that would need more are dropped and counted.
// Reed-Solomon runs only where a fragment is missing, or the packet's own CRC is wrong.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "tools/air/container/container_statistics.h"
#include "tools/air/container/edi_fec.h"
#include "tools/air/container/edi_packet.h"

namespace dabspi::air {

class pf_collector {
 public:
    static constexpr std::size_t kMostSets = 8;
    static constexpr std::size_t kMostSetBytes = 4 * kMostAfPacket;
    static constexpr std::uint32_t kMostFragments = 8192;

    explicit pf_collector(container_statistics& statistics) : statistics_(statistics) {}

    void add(const pf_fragment& fragment);
    // No fragment will come any more: nothing is waited for from here on.
    void finish() { finished_ = true; }

    // The next AF packet. Valid until the next call of take(); empty: none yet.
    byte_view take();

 private:
    struct set {
        std::uint32_t count = 0;
        bool fec = false;
        std::size_t chunk_data = 0;
        std::size_t filling = 0;
        std::size_t size = 0;  // of a fragment, with FEC
        std::size_t held = 0;  // bytes
        std::map<std::uint32_t, std::vector<std::uint8_t>> fragments;
        bool whole() const { return fragments.size() == count; }
    };

    std::uint64_t order_of(std::uint16_t sequence);
    bool is_usable(const pf_fragment& fragment) const;
    bool fits(const set& open, const pf_fragment& fragment) const;
    bool put_together(const set& from);
    bool put_together_with_fec(const set& from);
    bool unpack(const set& from, const std::vector<std::uint8_t>& block, bool correct);

    container_statistics& statistics_;
    std::map<std::uint64_t, set> open_;  // by order: sequence numbers that do not begin again
    std::uint64_t newest_ = 0;           // order of the latest packet that was begun
    std::uint64_t next_ = 0;             // order of the packet that is taken next
    bool begun_ = false;
    bool finished_ = false;
    std::vector<std::uint8_t> packet_;
    edi_fec fec_;
};

}  // namespace dabspi::air

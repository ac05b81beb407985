// The FIC of an ensemble with an SPI service, frame by frame (EN 300 401, 6 and 8.1): the FIGs go round as
// often as there is room, the ensemble identifier stands in every frame, the clock once a second.
//
// Owned by the caller, used on one thread.
#pragma once

#include <cstdint>
#include <vector>

#include "tools/transmit/fic/announced_ensemble.h"
#include "tools/transmit/mot/parameters.h"

namespace dabspi::transmit {

constexpr std::size_t kFicBytes = 96;  // three FIBs

class fic_writer {
 public:
    explicit fic_writer(const announced_ensemble& of);

    // `count`: of logical frames; `milliseconds`: UTC since 1858-11-17. Puts kFicBytes bytes there.
    void write(std::uint64_t count, std::int64_t milliseconds, std::uint8_t* to);

 private:
    void add_organisation(const announced_ensemble& of);
    void add_labels(const announced_ensemble& of);

    std::uint16_t eid_;
    bytes offset_;             // FIG 0/9
    std::vector<bytes> figs_;  // all others
    std::size_t next_ = 0;
};

}  // namespace dabspi::transmit

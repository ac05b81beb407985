// One ETI(NI) frame (ETS 300 799) as it is written. A pure function, any thread.
#pragma once

#include "tools/air/frame.h"
#include "tools/transmit/mot/parameters.h"

namespace dabspi::transmit {

constexpr std::size_t kRawEtiFrame = 6144;

// From ERR to TIST. Its FIC and sub-channels fit into a multiplex; their sizes are multiples of 8 bytes.
void append_eti_frame(bytes& to, const air::frame& of);

}  // namespace dabspi::transmit

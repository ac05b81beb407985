// One frame as an AF packet of EDI (TS 102 693, TS 102 821), as files and TCP have it. A pure function, any
// thread.
#pragma once

#include "tools/air/frame.h"
#include "tools/transmit/mot/parameters.h"

namespace dabspi::transmit {

void append_edi_packet(bytes& to, const air::frame& of);

}  // namespace dabspi::transmit

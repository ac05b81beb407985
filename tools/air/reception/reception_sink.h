// What is received from a multiplex, in the order in which it comes: called from within
// multiplex_reception::take() and finish().
#pragma once

#include "tools/air/fic/broadcast_clock.h"
#include "tools/air/fic/ensemble.h"
#include "tools/air/mot/mot_object.h"

namespace dabspi::air {

class reception_sink {
 public:
    virtual ~reception_sink() = default;
    // The description of the ensemble, whenever it has changed.
    virtual void ensemble_changed(const ensemble&) {}
    // A minute of local time has begun, or is the first that is known.
    virtual void minute(const local_minute&) {}
    virtual void object(const spi_component& from, const mot_object& received) = 0;
};

}  // namespace dabspi::air

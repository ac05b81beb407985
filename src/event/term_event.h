// EC_TERM: the server asks a worker to wind up, and the worker's answer. Part of the framework, since every
// worker answers.
#pragma once

#include "src/event/event.h"

namespace spi {

struct term_event : i_evt_base {
    term_event() : i_evt_base(EC_TERM) {}
};

}  // namespace spi

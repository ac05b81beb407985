// The condition on which a server's destructor waits: announced when an answer to EC_TERM was counted, when a
// worker's thread ended, and when an answer was lost. These are rare, so all servers of a process share it.
#pragma once

#include "src/event/monitor.h"

namespace spi {

// The one of this process; never destroyed.
monitor& teardown_monitor();

}  // namespace spi

// Counts what is posted to each worker's queue, one by one or by the router in runs, for tests that must know
// that something waits there. Executables link arrivals.cpp with WRAP and the compiler's names of
// event_proc::post_event and event_proc::append, dabspi_arrivals in CMake: the workers' tables of virtual
// functions, and the router, then name the counting ones.
#pragma once

#include "src/event/event_names.h"

namespace arrivals {

void forget();
// Waits until `count` events of this code have been posted to the queues of this identifier. A minute without
// them gives false.
bool wait_for(spi::_qid queue, spi::event_code code, long count);
// How many there were so far.
long count(spi::_qid queue, spi::event_code code);

}  // namespace arrivals

// Counts what is posted to each worker's queue, for tests that must know that something waits there.
// Executables link arrivals.cpp with WRAP _ZN3spi10event_proc10post_eventENS_5eventE, the compiler's name of
// event_proc::post_event: the workers' tables of virtual functions then name the counting one.
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

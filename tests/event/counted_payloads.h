// Counts the payloads of events by their codes, for tests that must know what is under way where nothing
// comes to rest: behind a listener that does not return, behind threads that are held back, after a worker's
// death.
//
// For executables that link counted_payloads.cpp: it defines i_evt_base in the place of the library's own
// source. Payloads count for wait_until_quiet all the same.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

#include "src/event/event_names.h"

namespace counted_payloads {

// Those made so far count no more.
void forget();
long made(spi::event_code code);
long alive(spi::event_code code);
long alive();  // of any code

// For wait_until.
extern std::mutex mutex;
extern std::condition_variable changed;

// Waits until `condition()`, which is looked at under the mutex whenever a payload was made or released. A
// minute without it gives false. Takes no memory: tests refuse it meanwhile.
template <class Condition>
bool wait_until(Condition condition) {
    std::unique_lock<std::mutex> lock(mutex);
    return changed.wait_for(lock, std::chrono::minutes(1), condition);
}
// Something else has changed that conditions look at.
void announce();

}  // namespace counted_payloads

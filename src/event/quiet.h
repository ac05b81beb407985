// Tells when the library has nothing in flight, for tools and tests.
#pragma once

#include <chrono>

#include "platform/dabspi_export.h"

namespace spi {

// Waits until no event of any server in this process is queued or being handled: everything that the calls
// made so far have caused, directly or through other workers, is done, and the listener has returned. True
// then; false when `limit` passed first (a listener that does not return, or a worker that has ended). Waits
// on the condition itself, without polling. Any thread but the library's own may call it. The answer is of
// use only while nobody feeds the library.
DABSPI_EXPORT bool wait_until_quiet(std::chrono::milliseconds limit);

// One more payload alive. Called by i_evt_base only: a handler makes its results before its own payload is
// released, so no payload alive means that nothing is in flight.
void count_payload() noexcept;
// One fewer.
void uncount_payload() noexcept;

}  // namespace spi

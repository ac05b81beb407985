// How far the destruction of a server has come, by the EC_TERM that were made since
// counted_payloads::forget(): the destructor asks four workers, the notifier first, and each answers with one
// of its own. For executables that link counted_payloads.cpp.
#pragma once

#include "tests/event/counted_payloads.h"

constexpr long kAskedWorkers = 4;

// The last request may still be on its way to the router.
inline bool all_are_asked_and_none_answers() {
    return counted_payloads::made(spi::EC_TERM) == kAskedWorkers &&
           counted_payloads::alive(spi::EC_TERM) == kAskedWorkers;
}

// The server has handled the other answers.
inline bool one_worker_alone_has_not_answered() {
    return counted_payloads::made(spi::EC_TERM) == 2 * kAskedWorkers - 1 &&
           counted_payloads::alive(spi::EC_TERM) == 1;
}

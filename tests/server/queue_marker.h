// Tells how far a server's workers have come, on a condition and without a look at what they do: a payload
// that nobody handles is sent behind everything else, and its release opens a gate.
#pragma once

#include <memory>

#include "src/server/spi_server.h"
#include "testkit/journal.h"

class queue_marker final : public spi::i_evt_base {
 public:
    explicit queue_marker(gate& released) : i_evt_base(spi::EC_SPI), released_(released) {}
    ~queue_marker() override { released_.open(); }

 private:
    gate& released_;
};

// Waits until everything that was sent to this worker so far is handled. QID_NONE: has passed the router.
inline void wait_until_passed(spi::SpiServer& server, spi::_qid worker) {
    gate passed;
    server.send(std::make_shared<queue_marker>(passed), worker);
    passed.wait();
}

// Waits until all that the host's calls so far lead to has come to the notifier's queue, whether the listener
// returns or not.
inline void wait_until_only_the_notifier_is_busy(spi::SpiServer& server) {
    for (const spi::_qid worker : {spi::QID_PARSE, spi::QID_LOGODB, spi::QID_EVTDB, spi::QID_NONE})
        wait_until_passed(server, worker);
}

// Stands in front of the library's header of this name: a recording worker in the place of the listener
// notifier.
#pragma once

#include "tests/server/recording_worker.h"

namespace spi {

class SpiCallback final : public recording_worker {
 public:
    SpiCallback() : recording_worker(QID_CBHDL) { begin(*this); }
    ~SpiCallback() override { end(); }
};

}  // namespace spi

// Stands in front of the library's header of this name: a recording worker in the place of the programme
// database.
#pragma once

#include "tests/server/recording_worker.h"

namespace spi {

class SpiEventDb final : public recording_worker {
 public:
    SpiEventDb() : recording_worker(QID_EVTDB) { begin(*this); }
    ~SpiEventDb() override { end(); }
};

}  // namespace spi

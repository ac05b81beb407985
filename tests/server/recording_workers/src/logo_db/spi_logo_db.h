// Stands in front of the library's header of this name: a recording worker in the place of the logo store.
#pragma once

#include "tests/server/recording_worker.h"

namespace spi {

class SpiLogoDb final : public recording_worker {
 public:
    SpiLogoDb() : recording_worker(QID_LOGODB) { begin(*this); }
    ~SpiLogoDb() override { end(); }
};

}  // namespace spi

// Stands in front of the library's header of this name: a recording worker in the place of the parser.
#pragma once

#include "tests/server/recording_worker.h"

namespace spi {

class SpiParser final : public recording_worker {
 public:
    SpiParser() : recording_worker(QID_PARSE) { begin(*this); }
    ~SpiParser() override { end(); }
};

}  // namespace spi

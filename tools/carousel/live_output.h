// Where a carousel goes that is sent at the pace of the air: standard output, a named pipe, or whoever
// connects to a TCP address. Used on one thread.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "tools/spi/byte_view.h"

namespace dabspi::carousel {

class live_output {
 public:
    virtual ~live_output() = default;
    // A reader that has gone is no error. The error's text that ends it, or an empty one.
    virtual std::string write(spi_object::byte_view frame) = 0;
};

// `target`: "-", the name of a pipe that exists, or "tcp://ADDRESS:PORT" (ADDRESS in numbers; port 0: any
// that is free). Null, and `error` filled, when it cannot be had. `say` gets lines for the user; `given_up`
// is asked while waiting.
std::unique_ptr<live_output> open_live_output(const std::string& target,
                                              const std::function<void(const std::string&)>& say,
                                              const std::function<bool()>& given_up, std::string& error);

}  // namespace dabspi::carousel

// What toSpiServer owns: the adaptor for the host's listener, and the core.
#pragma once

#include <memory>

#include "spi_wrap/spi_cb.h"
#include "src/server/spi_server.h"

namespace spi_wrap {

class spi_server {
 public:
    // Derives the logo root from the system's storage path, creates the directories, starts the core.
    explicit spi_server(ISpiListener* listener);
    // Destroys the core first: the adaptor outlives every notification.
    virtual ~spi_server();
    spi_server(const spi_server&) = delete;
    spi_server& operator=(const spi_server&) = delete;

    // Null only without an adaptor.
    spi::SpiServer* core() const { return core_; }

 private:
    std::shared_ptr<spi_cb> adaptor_;
    spi::SpiServer* core_ = nullptr;  // owned
};

}  // namespace spi_wrap

// The listener adaptor: turns the core's notifications into the host's records and calls the host's listener.
//
// Shared by the core, so it outlives every notification. Runs on the callback worker's thread.
#pragma once

#include "spi_wrap/to_spi_server.h"
#include "src/server/spi_listener.h"

namespace spi_wrap {

class spi_cb final : public spi::ISpiListener {
 public:
    // `listener` is not owned and may be null: then every notification is dropped.
    explicit spi_cb(spi_wrap::ISpiListener* listener) : listener_(listener) {}

    // Deliberately nothing: whole schedules do not reach the host.
    void ProgramInfoReceived(const spi::ServElemId& service, spi::SpiProgramInfo& info) override;
    void ProgramNowNextUpdated(spi::SpiProgramInfo& now, spi::SpiProgramInfo& next) override;
    void StationLogoReceived(spi::SpiLogoInfo& logo) override;

 private:
    spi_wrap::ISpiListener* listener_;
};

}  // namespace spi_wrap

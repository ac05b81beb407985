// The listener notifier (QID_CBHDL): every call into the host's listener comes from this worker's thread, one
// at a time.
//
// Exceptions of the listener are not caught here: they end this worker's thread, as any worker's handler's
// would.
#pragma once

#include <memory>

#include "src/event/event_proc.h"
#include "src/parse/pi_schedule_programme.h"
#include "src/parse/serv_elem_id.h"
#include "src/server/spi_listener.h"

namespace spi {

class SpiCallback final : public event_proc {
 public:
    SpiCallback();
    ~SpiCallback() override;

    void process_event(event& e) override;

    // Each makes the listener's records and one call; nothing happens without a listener. Always 0.
    int send_evtinfo(const ServElemId& service, const PiScheduleProgramme& programme);
    int send_nownext(const PiScheduleProgramme& now, const PiScheduleProgramme& next);
    int send_logoinfo(SpiLogoInfo& logo);

 private:
    std::shared_ptr<ISpiListener> listener_;  // this worker's thread only
};

}  // namespace spi

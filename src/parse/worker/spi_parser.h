// The parser worker (QID_PARSE): tells service information from programme information, passes over objects
// that it has parsed already, and hands the others to their parsers; what they find it sends on.
//
// All of its members are touched on its own thread only, so there is no lock.
#pragma once

#include <cstdint>

#include "src/event/event_proc.h"
#include "src/event/outbox.h"
#include "src/parse/body/spi_body_listener.h"
#include "src/parse/body/spi_body_table.h"
#include "src/parse/mot_body.h"
#include "src/parse/mot_date_time.h"
#include "src/parse/serv_elem_id.h"

namespace spi {

class SpiParser final : public event_proc, public SpiBodyListener {
 public:
    SpiParser();
    ~SpiParser() override;

    void process_event(event& e) override;

    // Empties the table of parsed objects on a new day, see effect_of_date. Always 0.
    int handle_date_time(const MotDateTime& now);

    // The object is remembered even when its sub-type is none that is parsed; a later object of the same name
    // and size is then passed over whatever its sub-type.
    void handle_body_spi(const MotBodyMetadata& metadata, MotBody&& body, ServElemId service);

    // To the programme database.
    void programme_read(const ServElemId& service, PiScheduleProgramme&& programme,
                        std::uint32_t offset) override;
    // Silently.
    void programme_dropped(no_service why, PiScheduleProgramme&& programme, std::uint32_t offset) override;
    // To the logo store.
    void service_read(const ServElemId& received_with, SiServiceInfo&& info, std::uint32_t offset) override;

 private:
    outbox results_{*this, spare_node()};
    MotDateTime last_time_;  // year 0: no date received yet
    // The current ensemble. 0: none known; only identifiers with ensemble 0 are accepted.
    std::uint16_t eid_ = 0;
    SpiBodyTable bodies_;
};

}  // namespace spi

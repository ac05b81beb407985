// What the parsers of SPI objects report to: each programme and service that they read, and each programme
// that they drop. Called on the thread of the parser, in the order of the object.
//
// `offset` is where the element's tag stands in the body.
#pragma once

#include <cstdint>

#include "src/parse/pi_schedule_programme.h"
#include "src/parse/serv_elem_id.h"
#include "src/parse/si_service_info.h"

namespace spi {

// Why a programme has no service.
struct no_service {
    enum reason_t : std::uint8_t {
        not_named,       // by no scope, default content identifier or bearer
        other_ensemble,  // named on another ensemble only
        zero_identifier  // named on this ensemble, with a service identifier or an ECC of 0
    };
    reason_t reason;
    std::uint16_t ensemble;  // other_ensemble: the first that was named
};

class SpiBodyListener {
 public:
    virtual void programme_read(const ServElemId& service, PiScheduleProgramme&& programme,
                                std::uint32_t offset) = 0;
    virtual void programme_dropped(no_service why, PiScheduleProgramme&& programme, std::uint32_t offset) = 0;
    // `received_with` is the service that the object came with, `info.id` the one described.
    virtual void service_read(const ServElemId& received_with, SiServiceInfo&& info,
                              std::uint32_t offset) = 0;

 protected:
    ~SpiBodyListener() = default;
};

}  // namespace spi

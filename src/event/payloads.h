// Every payload that events carry. Made with std::make_shared, read by their receivers, never changed once
// posted; the one exception is the body of a MOT object, which its single receiver moves out.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "src/event/event.h"
#include "src/event/term_event.h"
#include "src/parse/mot_body.h"
#include "src/parse/mot_date_time.h"
#include "src/parse/pi_schedule_programme.h"
#include "src/parse/serv_elem_id.h"
#include "src/parse/si_service_info.h"
#include "src/parse/spi_logo_info.h"

namespace spi {

class ISpiListener;

struct string_info_event : i_evt_base {
    std::string text;

 protected:
    string_info_event(event_code event, std::string info) : i_evt_base(event), text(std::move(info)) {}
};

// The directory for temporary files. Server to logo store, which does not act on it.
struct temp_root_event : string_info_event {
    explicit temp_root_event(std::string directory) : string_info_event(EC_TEMPROOT, std::move(directory)) {}
};

// The directory for station logos. Server to logo store.
struct logo_root_event : string_info_event {
    explicit logo_root_event(std::string directory) : string_info_event(EC_LOGOROOT, std::move(directory)) {}
};

// The host's clock. Server to everybody.
struct date_time_event : i_evt_base {
    MotDateTime now;
    explicit date_time_event(const MotDateTime& t) : i_evt_base(EC_DATETIME), now(t) {}
};

// The service that is being listened to. Server to programme database.
struct set_service_event : i_evt_base {
    ServElemId service;
    explicit set_service_event(const ServElemId& id) : i_evt_base(EC_SERV), service(id) {}
};

// The ensemble that is being received. Server to parser, when it changes.
struct set_ensemble_event : i_evt_base {
    std::uint16_t ensemble;
    explicit set_ensemble_event(std::uint16_t eid) : i_evt_base(EC_ENS), ensemble(eid) {}
};

// One MOT object, with the service that it was received with.
struct mot_body_event : i_evt_base {
    MotBodyMetadata metadata;
    MotBody body;  // moved out by the one receiver
    ServElemId service;

 protected:
    mot_body_event(event_code event, MotBodyMetadata parameters, MotBody&& bytes, const ServElemId& id)
        : i_evt_base(event), metadata(std::move(parameters)), body(std::move(bytes)), service(id) {}
};

// An image. Server to logo store.
struct image_body_event : mot_body_event {
    image_body_event(MotBodyMetadata parameters, MotBody&& bytes, const ServElemId& id)
        : mot_body_event(EC_BODYIMG, std::move(parameters), std::move(bytes), id) {}
};

// A binary SPI object. Server to parser.
struct spi_body_event : mot_body_event {
    spi_body_event(MotBodyMetadata parameters, MotBody&& bytes, const ServElemId& id)
        : mot_body_event(EC_BODYSPI, std::move(parameters), std::move(bytes), id) {}
};

// One programme. Parser to programme database; from there, once it is stored, to the listener notifier.
struct pi_programme_event : i_evt_base {
    ServElemId service;
    PiScheduleProgramme programme;
    pi_programme_event(const ServElemId& id, PiScheduleProgramme p)
        : i_evt_base(EC_EVTINFO), service(id), programme(std::move(p)) {}
};

// One described service. Parser to logo store.
struct si_service_event : i_evt_base {
    ServElemId service;  // with which the object was received, not the one described
    SiServiceInfo info;
    si_service_event(const ServElemId& id, SiServiceInfo&& described)
        : i_evt_base(EC_SERVINFO), service(id), info(std::move(described)) {}
};

// The listener to call from now on. Server to listener notifier.
struct cb_register_event : i_evt_base {
    std::shared_ptr<ISpiListener> listener;
    explicit cb_register_event(std::shared_ptr<ISpiListener> l)
        : i_evt_base(EC_EVTCB), listener(std::move(l)) {}
};

// Now and next of the current service; either may be empty. Programme database to listener notifier.
struct nownext_update_event : i_evt_base {
    PiScheduleProgramme now;
    PiScheduleProgramme next;
    nownext_update_event(const PiScheduleProgramme& n, const PiScheduleProgramme& following)
        : i_evt_base(EC_NOWNEXT), now(n), next(following) {}
};

// Asks for now and next once more. Server to programme database.
struct resend_nownext_event : i_evt_base {
    resend_nownext_event() : i_evt_base(EC_RESEND) {}
};

// A logo that has been written. Logo store to listener notifier.
struct si_logo_event : i_evt_base {
    SpiLogoInfo logo;
    explicit si_logo_event(SpiLogoInfo written) : i_evt_base(EC_LOGOCB), logo(std::move(written)) {}
};

// Forget everything that was received. Server to everybody.
struct db_clear_event : i_evt_base {
    db_clear_event() : i_evt_base(EC_DBCLEAR) {}
};

}  // namespace spi

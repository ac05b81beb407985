#include "src/parse/worker/spi_parser.h"

#include <utility>

#include "src/event/payloads.h"
#include "src/parse/body/spi_body.h"

namespace spi {

SpiParser::SpiParser() : event_proc(QID_PARSE, worker_duties{}) {
    begin(*this);
}
SpiParser::~SpiParser() {
    destroy_proc();
}

void SpiParser::process_event(event& e) {
    const outbox::turn turn(results_);
    switch (e.code()) {
        case EC_DATETIME: handle_date_time(static_cast<const date_time_event&>(*e.payload).now); break;
        case EC_ENS: eid_ = static_cast<const set_ensemble_event&>(*e.payload).ensemble; break;
        case EC_BODYSPI: {
            auto& received = static_cast<spi_body_event&>(*e.payload);
            handle_body_spi(received.metadata, std::move(received.body), received.service);
            break;
        }
        case EC_DBCLEAR: bodies_.clear(); break;
        case EC_TERM: event_proc::process_event(e); break;
        default: break;
    }
}

int SpiParser::handle_date_time(const MotDateTime& now) {
    const date_effect effect = effect_of_date(last_time_, now);
    if (effect == date_effect::emptied) bodies_.clear();
    if (effect != date_effect::same_day) last_time_ = now;
    return 0;
}

void SpiParser::handle_body_spi(const MotBodyMetadata& metadata, MotBody&& received, ServElemId service) {
    MotBody body = std::move(received);  // freed here whatever happens
    if (bodies_.has_body(metadata.content_name, body.size, service)) return;
    read_spi_body(metadata.content_subtype, std::move(body), service, eid_, *this);
}

void SpiParser::programme_read(const ServElemId& service, PiScheduleProgramme&& programme,
                               std::uint32_t /*offset*/) {
    results_.send(std::make_shared<pi_programme_event>(service, std::move(programme)), QID_EVTDB);
}

void SpiParser::programme_dropped(no_service /*why*/, PiScheduleProgramme&& /*programme*/,
                                  std::uint32_t /*offset*/) {}

void SpiParser::service_read(const ServElemId& received_with, SiServiceInfo&& info,
                             std::uint32_t /*offset*/) {
    results_.send(std::make_shared<si_service_event>(received_with, std::move(info)), QID_LOGODB);
}

}  // namespace spi

#include "src/parse/spi_parser.h"

#include <utility>

#include "src/event/payloads.h"
#include "src/parse/pi_body_parser.h"
#include "src/parse/si_body_parser.h"

namespace spi {
namespace {

// MOT ContentSubType of binary SPI objects.
constexpr std::uint16_t kServiceInformation = 0;
constexpr std::uint16_t kProgrammeInformation = 1;

}  // namespace

SpiParser::SpiParser() : event_proc(QID_PARSE, worker_duties{}) {
    begin(*this);
}
SpiParser::~SpiParser() {
    destroy_proc();
}

void SpiParser::process_event(event& e) {
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
    if (now.day == last_time_.day) return 0;
    if (last_time_.year != 0) bodies_.clear();
    last_time_ = now;
    return 0;
}

void SpiParser::handle_body_spi(const MotBodyMetadata& metadata, MotBody&& received, ServElemId service) {
    MotBody body = std::move(received);  // freed here whatever happens
    if (bodies_.has_body(metadata.content_name, body.size, service)) return;
    switch (metadata.content_subtype) {
        case kServiceInformation: SiBodyParser(*this).parse(service, std::move(body)); break;
        case kProgrammeInformation: PiBodyParser(*this, eid_).parse(std::move(body)); break;
        default: break;
    }
}

}  // namespace spi

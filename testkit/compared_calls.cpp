#include "testkit/compared_calls.h"

#include "src/event/payloads.h"

namespace event_db {

std::shared_ptr<spi::i_evt_base> payload_for(const call& c) {
    switch (c.kind) {
        case call::kProgramme: return std::make_shared<spi::pi_programme_event>(c.service, c.programme);
        case call::kDateTime: return std::make_shared<spi::date_time_event>(c.time);
        case call::kService: return std::make_shared<spi::set_service_event>(c.service);
        case call::kResend: return std::make_shared<spi::resend_nownext_event>();
        default: return std::make_shared<spi::db_clear_event>();
    }
}

std::string event_text(const spi::event& e) {
    const std::string where =
        std::string(spi::queue_name(e.destination)) + ' ' + spi::event_name(e.code()) + ' ';
    if (e.code() == spi::EC_EVTINFO) {
        const auto& stored = dynamic_cast<const spi::pi_programme_event&>(*e.payload);
        return where + as_text(stored.service) + ' ' + as_text(stored.programme);
    }
    if (e.code() == spi::EC_NOWNEXT) {
        const auto& update = dynamic_cast<const spi::nownext_update_event&>(*e.payload);
        return where + as_text(update.now) + " / " + as_text(update.next);
    }
    return where;
}

namespace {

std::vector<notice> announced(database_model& model, const call& c) {
    switch (c.kind) {
        case call::kProgramme: return model.programme(c.service, c.programme);
        case call::kDateTime: return model.date_time(c.time);
        case call::kService: return model.service(c.service);
        case call::kResend: return model.resend();
        default: return model.clear();
    }
}

}  // namespace

std::vector<std::string> sent_by(database_model& model, const call& c) {
    std::vector<std::string> texts;
    for (const notice& n : announced(model, c))
        texts.push_back(as_text(n));
    return texts;
}

}  // namespace event_db

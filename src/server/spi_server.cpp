#include "src/server/spi_server.h"

#include <mutex>
#include <utility>

#include "src/event/payloads.h"
#include "src/event_db/spi_event_db.h"
#include "src/logo_db/spi_logo_db.h"
#include "src/parse/worker/spi_parser.h"
#include "src/server/host_rules.h"
#include "src/server/spi_callback.h"
#include "src/server/version_text.h"

namespace spi {
namespace {

constexpr std::uint8_t kWorkers = 4;

constexpr const char* kRevision = "$Rev: 2286 $";
// g++ takes these from SOURCE_DATE_EPOCH when that is set, so builds can be reproduced.
constexpr const char* kBuildDate = __DATE__ " " __TIME__;

template <class Worker>
void register_new(event_backend& backend) {
    auto worker = std::make_unique<Worker>();
    if (backend.register_queue(worker.get()) == event_backend::kRegistered)
        worker.release();  // the router's now
}

}  // namespace

SpiServer::SpiServer(std::shared_ptr<ISpiListener> listener, const std::string& temp_root,
                     const std::string& logo_root)
    : term_event_proc(QID_SERV) {
    try {
        register_workers();
        send_to(QID_CBHDL, std::make_shared<cb_register_event>(std::move(listener)));
        send_to(QID_LOGODB,
                std::make_shared<temp_root_event>(temp_root));  // dropped there; sent all the same
        send_to(QID_LOGODB, std::make_shared<logo_root_event>(logo_root));
        version_text(kRevision, kBuildDate);  // composed and deliberately not written anywhere
    } catch (...) {
        unregister_workers();
        backend_.destroy_proc();
        destroy_proc();
        throw;
    }
    begin(*this);
}

void SpiServer::register_workers() {
    backend_.register_queue(this);
    register_new<SpiCallback>(backend_);
    register_new<SpiParser>(backend_);
    register_new<SpiLogoDb>(backend_);
    register_new<SpiEventDb>(backend_);
}

SpiServer::~SpiServer() {
    bool all_asked = true;
    for (const _qid worker : {QID_CBHDL, QID_PARSE, QID_LOGODB, QID_EVTDB}) {
        try {
            send_to(worker, std::make_shared<term_event>());
        } catch (...) {  // no memory: this worker cannot answer
            all_asked = false;
        }
    }
    // Four answers release the lock. Where one will never come, the server's own thread is stopped, and
    // releases it.
    if (!wait_disarmed([&] { return !all_asked || backend_.lost_an_answer(); })) destroy_proc();
    {
        const std::lock_guard<std::mutex> lock(mutex());
        unregister_workers();
    }
    // In this order and here: the members must not go while a thread still uses them.
    backend_.destroy_proc();
    destroy_proc();
}

void SpiServer::unregister_workers() noexcept {
    for (const _qid id : {QID_EVTDB, QID_LOGODB, QID_PARSE, QID_CBHDL, QID_SERV}) {
        const bool destroy = id != QID_SERV;  // the server's own worker is part of the server itself
        if (backend_.is_registered(id)) backend_.unregister_queue(id, destroy);
    }
}

void SpiServer::FeedMotBody(MotBodyMetadata metadata, MotBody&& body, ServElemId service) {
    switch (destination_of(metadata.content_type)) {
        case QID_LOGODB:
            send_to(QID_LOGODB,
                    std::make_shared<image_body_event>(std::move(metadata), std::move(body), service));
            break;
        case QID_PARSE:
            send_to(QID_PARSE,
                    std::make_shared<spi_body_event>(std::move(metadata), std::move(body), service));
            break;
        default: {
            const MotBody dropped = std::move(body);
            break;
        }
    }
}

void SpiServer::SetCurrentService(ServElemId& service, unsigned short ensemble) {
    const std::uint16_t before = ensemble_;
    try {
        check_ensemble(ensemble);
        if (reaches_parser(change_of_ensemble(before, ensemble)))
            send_to(QID_PARSE, std::make_shared<set_ensemble_event>(ensemble));
    } catch (...) {
        // Out of memory: the change has not reached the workers. A host that calls again must find it still
        // to be made.
        ensemble_ = before;
        throw;
    }
    send_to(QID_EVTDB, std::make_shared<set_service_event>(service));
}

bool SpiServer::check_ensemble(unsigned short ensemble) {
    const ensemble_change change = change_of_ensemble(ensemble_, ensemble);
    if (forgets_everything(change)) send_to(QID_ALL, std::make_shared<db_clear_event>());
    ensemble_ = ensemble;
    return change != ensemble_change::none || ensemble == 0;
}

void SpiServer::SetDateTime(MotDateTime& now) {
    send_to(QID_ALL, std::make_shared<date_time_event>(now));
}

void SpiServer::ResendNowNext() {
    send_to(QID_EVTDB, std::make_shared<resend_nownext_event>());
}

void SpiServer::pre() {
    lock();
}

void SpiServer::process_event(event& e) {
    if (e.code() != EC_TERM) return;
    if (++terminated_ != kWorkers) return;
    unlock("unknown");
    disarm();
}

void SpiServer::send_to(_qid destination, std::shared_ptr<i_evt_base> payload) {
    if (destination == queue_id()) {
        post_event(event(destination, std::move(payload)));
    } else {
        send(std::move(payload), destination);
    }
}

}  // namespace spi

#include "tests/wrap/recording_core.h"

#include <new>
#include <utility>

#include "tests/wrap/process_state.h"

namespace {

std::weak_ptr<spi::ISpiListener>& seen_listener() {
    static std::weak_ptr<spi::ISpiListener> instance;
    return instance;
}

// The core's share of its listener: of the one core that lives at a time.
std::shared_ptr<spi::ISpiListener>& held_listener() {
    static std::shared_ptr<spi::ISpiListener> instance;
    return instance;
}

}  // namespace

namespace recording_core {

record_t& record() {
    static record_t instance;
    return instance;
}

void forget() {
    record() = record_t();
    seen_listener().reset();
    held_listener().reset();
}

std::weak_ptr<spi::ISpiListener> last_listener() {
    return seen_listener();
}

}  // namespace recording_core

namespace spi {

using recording_core::record;

SpiServer::SpiServer(std::shared_ptr<ISpiListener> listener, const std::string& temp_root,
                     const std::string& logo_root)
    : term_event_proc(QID_SERV) {
    if (record().fail_construction) throw std::bad_alloc();
    begin(*this);
    recording_core::made_t made;
    made.temp_root = temp_root;
    made.logo_root = logo_root;
    made.block_open_meanwhile = mappings_of("SysDataInfo") > 0;
    made.listener_owners = static_cast<int>(listener.use_count());
    record().made.push_back(std::move(made));
    seen_listener() = listener;
    held_listener() = std::move(listener);
}

SpiServer::~SpiServer() {
    ++record().destroyed;
    held_listener().reset();
    record().listener_alive_at_destruction = !seen_listener().expired();  // by the wrapper's own share
    destroy_proc();
}

void SpiServer::FeedMotBody(MotBodyMetadata metadata, MotBody&& body, ServElemId service) {
    recording_core::body_t got;
    got.metadata = std::move(metadata);
    got.size = body.size;
    got.has_data = body.data != nullptr;
    got.address = body.data.get();
    if (body.data) got.bytes.assign(body.data.get(), body.data.get() + body.size);
    got.service = service;
    record().bodies.push_back(std::move(got));
}

void SpiServer::SetCurrentService(ServElemId& service, unsigned short ensemble) {
    record().services.push_back({service, ensemble});
}

void SpiServer::SetDateTime(MotDateTime& now) {
    record().times.push_back(now);
}

void SpiServer::ResendNowNext() {}
bool SpiServer::check_ensemble(unsigned short) {
    return false;
}
void SpiServer::pre() {}
void SpiServer::process_event(event&) {}

}  // namespace spi

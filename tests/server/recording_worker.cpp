#include "tests/server/recording_worker.h"

#include <utility>

#include "src/event/payloads.h"

namespace {

delivery describe(spi::_qid worker, const spi::event& e) {
    delivery d;
    d.worker = worker;
    d.destination = e.destination;
    d.code = e.code();
    d.payload = e.payload.get();
    const spi::i_evt_base* const payload = e.payload.get();
    if (const auto* text = dynamic_cast<const spi::string_info_event*>(payload)) d.text = text->text;
    if (const auto* time = dynamic_cast<const spi::date_time_event*>(payload)) d.now = time->now;
    if (const auto* service = dynamic_cast<const spi::set_service_event*>(payload))
        d.service = service->service;
    if (const auto* ensemble = dynamic_cast<const spi::set_ensemble_event*>(payload))
        d.ensemble = ensemble->ensemble;
    if (const auto* registration = dynamic_cast<const spi::cb_register_event*>(payload))
        d.listener = registration->listener.get();
    if (const auto* object = dynamic_cast<const spi::mot_body_event*>(payload)) {
        d.metadata = object->metadata;
        d.service = object->service;
        if (object->body.data)
            d.text.assign(object->body.data.get(), object->body.data.get() + object->body.size);
    }
    return d;
}

template <class T>
journal<T>& never_destroyed() {
    static auto& instance = *new journal<T>;
    return instance;
}

std::function<void()>& end_hook() {
    static auto& instance = *new std::function<void()>;
    return instance;
}

}  // namespace

std::string brief(const delivery& d) {
    return std::string(spi::queue_name(d.worker)).substr(4) + "<-" + spi::event_name(d.code);
}

recording_worker::recording_worker(spi::_qid id) : event_proc(id, spi::worker_duties{}) {
    made().add(id);
}
recording_worker::~recording_worker() {
    ended().add(queue_id());
    if (end_hook()) end_hook()();
}
void recording_worker::end() {
    destroy_proc();
}

int recording_worker::post_event(spi::event e) {
    delivered().add(describe(queue_id(), e));
    return event_proc::post_event(std::move(e));
}

void recording_worker::process_event(spi::event& e) {
    handled().add(describe(queue_id(), e));
    event_proc::process_event(e);
}

journal<delivery>& recording_worker::delivered() {
    return never_destroyed<delivery>();
}
journal<delivery>& recording_worker::handled() {
    static auto& instance = *new journal<delivery>;
    return instance;
}
journal<spi::_qid>& recording_worker::made() {
    return never_destroyed<spi::_qid>();
}
journal<spi::_qid>& recording_worker::ended() {
    static auto& instance = *new journal<spi::_qid>;
    return instance;
}
void recording_worker::forget_all() {
    delivered().take();
    handled().take();
    made().take();
    ended().take();
    end_hook() = {};
}
void recording_worker::on_end(std::function<void()> hook) {
    end_hook() = std::move(hook);
}

#include "src/event/event_backend.h"

#include <utility>

#include "src/event/serr.h"
#include "src/event/teardown.h"

namespace spi {

event_backend::event_backend() : event_backend(nullptr) {
    begin(*this);
}

event_backend::event_backend(std::function<bool(std::list<event>&)> pass_on)
    : event_proc(QID_SYS, {std::move(pass_on),
                           [this](event& request, bool in_hand) { pass_on_when_ended(request, in_hand); },
                           {}}) {}

event_backend::~event_backend() {
    destroy_proc();
    const std::lock_guard<std::recursive_mutex> lock(table_mutex_);
    table_.clear();
}

void event_backend::process_event(event& e) {
    if (e.destination == QID_NONE) return;
    std::unique_lock<std::recursive_mutex> lock(table_mutex_);
    if (e.destination == QID_ALL) {
        for (const auto& [id, worker] : table_)
            worker->post_event(e);
        return;
    }
    if (event_proc* const worker = find(e.destination)) {
        worker->post_event(e);
        return;
    }
    lock.unlock();
    serr() << ' ' << "Event backend - no queue " << ' ' << queue_name(e.destination) << ' ' << '/' << ' '
           << event_name(e.code());
}

// A router answers nothing: it passes a request on. What was in hand when its thread ended may have been
// passed on to some already.
void event_backend::pass_on_when_ended(event& request, bool in_hand) noexcept {
    try {
        if (!in_hand) return process_event(request);
    } catch (...) {
        // No memory: it is lost.
    }
    note_lost_answer();
}

void event_backend::note_lost_answer() noexcept {
    lost_answer_ = true;
    teardown_monitor().announce();
}

int event_backend::register_queue(event_proc* proc) {
    const std::lock_guard<std::recursive_mutex> lock(table_mutex_);
    if (find(proc->queue_id()) != nullptr) return kAlreadyRegistered;
    if (!table_.emplace(proc->queue_id(), proc).second) return kInsertionFailed;
    proc->set_backend(this);
    return kRegistered;
}

int event_backend::unregister_queue(_qid id, bool destroy) {
    event_proc* worker = nullptr;
    {
        const std::lock_guard<std::recursive_mutex> lock(table_mutex_);
        worker = find(id);
        table_.erase(id);
    }
    if (worker == nullptr) {
        serr() << ' ' << "event queue unregistered - no queue " << ' ' << queue_name(id);
        return kNotRegistered;
    }
    // Outside the lock: deleting waits for the worker's thread, which must not hold up the router meanwhile.
    if (destroy) delete worker;
    return kUnregistered;
}

bool event_backend::is_registered(_qid id) {
    const std::lock_guard<std::recursive_mutex> lock(table_mutex_);
    return find(id) != nullptr;
}

event_proc* event_backend::find(_qid id) const {
    const auto found = table_.find(id);
    return found == table_.end() ? nullptr : found->second;
}

}  // namespace spi

#include "src/event/event_backend.h"

#include <utility>

#include "src/event/serr.h"
#include "src/event/teardown.h"

namespace spi {
namespace {

constexpr std::size_t kBucketHint = 10;

}  // namespace

event_backend::event_backend() : event_backend(nullptr) {
    begin(*this);
}

event_backend::event_backend(std::function<bool(std::list<event>&)> pass_on)
    : event_proc(QID_SYS, {std::move(pass_on),
                           [this](event& request, bool in_hand) { pass_on_when_ended(request, in_hand); },
                           {}}),
      table_(kBucketHint) {}

event_backend::~event_backend() {
    destroy_proc();
    const std::lock_guard<std::recursive_mutex> lock(table_mutex_);
    table_.clear();
}

void event_backend::process_event(event& e) {
    if (e.destination == QID_NONE) return;
    if (e.destination == QID_ALL) {
        const std::lock_guard<std::recursive_mutex> lock(table_mutex_);
        for (const auto& [id, worker] : table_)
            worker->post_event(e);
        return;
    }
    if (with_worker(e.destination, [&](event_proc& worker) { worker.post_event(e); })) return;
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
    if (table_.count(proc->queue_id()) != 0) return kAlreadyRegistered;
    if (!table_.emplace(proc->queue_id(), proc).second) return kInsertionFailed;
    proc->set_backend(this);
    return kRegistered;
}

int event_backend::unregister_queue(_qid id, bool destroy) {
    event_proc* worker = nullptr;
    {
        const std::lock_guard<std::recursive_mutex> lock(table_mutex_);
        const auto found = table_.find(id);
        if (found != table_.end()) {
            worker = found->second;
            table_.erase(found);
        }
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
    return table_.count(id) != 0;
}

}  // namespace spi

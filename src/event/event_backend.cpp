#include "src/event/event_backend.h"

#include "src/event/serr.h"

namespace spi {
namespace {

constexpr std::size_t kBucketHint = 10;

}  // namespace

event_backend::event_backend(forwarding how)
    : event_backend(deferred(how == kInRuns ? kTakesRuns | kRoutesRuns : unsigned{kOneByOne})) {
    begin();
}
event_backend::event_backend(deferred d) : event_proc(QID_SYS, d), table_(kBucketHint) {}

event_backend::~event_backend() {
    destroy_proc();
    const std::lock_guard<std::recursive_mutex> lock(table_mutex_);
    table_.clear();
}

void event_backend::process_event(event& e) {
    if (e.destination == QID_NONE) return;
    {
        const std::lock_guard<std::recursive_mutex> lock(table_mutex_);
        if (e.destination == QID_ALL) {
            for (const auto& [id, worker] : table_)
                worker->post_event(e);
            return;
        }
        const auto found = table_.find(e.destination);
        if (found != table_.end()) {
            found->second->post_event(e);
            return;
        }
    }
    serr() << ' ' << "Event backend - no queue " << ' ' << queue_name(e.destination) << ' ' << '/' << ' '
           << event_name(e.code());
}

bool event_backend::forward_run(std::list<event>& events) {
    const _qid destination = events.front().destination;
    if (destination == QID_NONE || destination == QID_ALL) return false;
    const std::lock_guard<std::recursive_mutex> lock(table_mutex_);
    const auto found = table_.find(destination);
    if (found == table_.end() || !found->second->is(kTakesRuns)) return false;
    auto end = events.begin();
    while (end != events.end() && end->destination == destination)
        ++end;
    std::list<event> run;
    if (end == events.end()) {
        run.swap(events);
    } else {
        run.splice(run.begin(), events, events.begin(), end);
    }
    found->second->append(run);
    return true;
}

int event_backend::register_queue(event_proc* proc) {
    const std::lock_guard<std::recursive_mutex> lock(table_mutex_);
    if (table_.count(proc->queue_id()) != 0) return kAlreadyRegistered;
    if (!table_.emplace(proc->queue_id(), proc).second) return kInsertionFailed;
    proc->backend_ = this;
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

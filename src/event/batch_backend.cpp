#include "src/event/batch_backend.h"

namespace spi {

batch_backend::batch_backend() : event_backend([this](std::list<event>& batch) { return pass_on(batch); }) {
    begin(*this);
}
batch_backend::~batch_backend() {
    destroy_proc();
}

bool batch_backend::pass_on(std::list<event>& batch) {
    const _qid destination = batch.front().destination;
    if (destination == QID_NONE || destination == QID_ALL) return false;
    const std::lock_guard<std::recursive_mutex> lock(table_mutex_);
    event_proc* const worker = find(destination);
    if (worker == nullptr || !worker->takes_batches()) return false;
    auto end = batch.begin();
    while (end != batch.end() && end->destination == destination)
        ++end;
    std::list<event> first;
    first.splice(first.begin(), batch, batch.begin(), end);
    worker->post_batch(first);
    return true;
}

}  // namespace spi

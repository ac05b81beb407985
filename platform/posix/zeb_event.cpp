#include "platform/zeb_sync.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

struct ZebEvent::state {
    std::mutex mutex;
    std::condition_variable changed;
    bool set = false;
};

ZebEvent::ZebEvent() : state_(new state) {}
ZebEvent::~ZebEvent() {
    delete state_;
}

void ZebEvent::Set() {
    const std::lock_guard<std::mutex> lock(state_->mutex);
    state_->set = true;
    state_->changed.notify_all();
}

bool ZebEvent::Wait(int milliseconds) {
    std::unique_lock<std::mutex> lock(state_->mutex);
    return state_->changed.wait_for(lock, std::chrono::milliseconds(milliseconds),
                                    [this] { return state_->set; });
}

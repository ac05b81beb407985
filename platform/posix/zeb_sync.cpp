#include "platform/zeb_sync.h"

#include <mutex>

struct ZebSync::state {
    std::recursive_mutex mutex;
};

ZebSync::ZebSync() : state_(new state) {}
ZebSync::~ZebSync() {
    delete state_;
}
void ZebSync::lock() const {
    state_->mutex.lock();
}
void ZebSync::unlock() const {
    state_->mutex.unlock();
}

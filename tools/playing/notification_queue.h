// Takes the listener's calls on the library's thread and keeps them until the feeding thread fetches them. So
// a slow or stopped reader of the output never holds up the library, and no exception ever leaves a listener
// call.
#pragma once

#include <mutex>
#include <new>
#include <utility>
#include <vector>

#include "tools/recording/notification.h"

namespace dabspi {

class notification_queue {
 public:
    // Any thread. When memory runs out, the notification is lost and the next take() says so.
    template <typename MakeNotification>
    void put(const MakeNotification& make) noexcept {
        const std::lock_guard<std::mutex> lock(mutex_);
        try {
            kept_.push_back(make());
        } catch (...) {
            lost_ = true;
        }
    }

    // All that has come since the last call, in order. Throws std::bad_alloc when one was lost.
    std::vector<notification> take() {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (lost_) throw std::bad_alloc();
        return std::exchange(kept_, {});
    }

 private:
    std::mutex mutex_;
    std::vector<notification> kept_;
    bool lost_ = false;
};

}  // namespace dabspi

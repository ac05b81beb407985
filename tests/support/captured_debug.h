// Collects the messages of the platform's debug output while it lives. One at a time.
#pragma once

#include <mutex>
#include <utility>
#include <vector>

#include "platform/posix/zeb_posix.h"

class captured_debug {
 public:
    captured_debug() {
        messages().clear();
        before_ = zeb_set_debug_sink(&captured_debug::keep);
    }
    ~captured_debug() { zeb_set_debug_sink(before_); }
    captured_debug(const captured_debug&) = delete;
    captured_debug& operator=(const captured_debug&) = delete;

    std::vector<ZebDebugMessage> take() {
        const std::lock_guard<std::mutex> lock(mutex());
        return std::exchange(messages(), {});
    }

 private:
    static void keep(const ZebDebugMessage& message) {
        const std::lock_guard<std::mutex> lock(mutex());
        messages().push_back(message);
    }
    static std::mutex& mutex() {
        static std::mutex instance;
        return instance;
    }
    static std::vector<ZebDebugMessage>& messages() {
        static std::vector<ZebDebugMessage> instance;
        return instance;
    }

    ZebDebugSink before_;
};

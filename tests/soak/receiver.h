// The library as the soak drives it: through the core or through the host-facing layer.
#pragma once

#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "src/parse/mot_date_time.h"
#include "testkit/ensemble/carousel_object.h"

namespace soak {

// What a listener receives, in two streams: what the programme database causes and what the logo store
// causes. Between the two there is no order.
class received_calls {
 public:
    void database(std::string text) {
        const std::lock_guard<std::mutex> lock(mutex_);
        database_.push_back(std::move(text));
        threads_.insert(std::this_thread::get_id());
    }
    void logo(std::string text) {
        const std::lock_guard<std::mutex> lock(mutex_);
        logos_.push_back(std::move(text));
        threads_.insert(std::this_thread::get_id());
    }
    std::vector<std::string> take_database() {
        const std::lock_guard<std::mutex> lock(mutex_);
        return std::exchange(database_, {});
    }
    std::vector<std::string> take_logos() {
        const std::lock_guard<std::mutex> lock(mutex_);
        return std::exchange(logos_, {});
    }
    std::size_t threads() {
        const std::lock_guard<std::mutex> lock(mutex_);
        return threads_.size();
    }

 private:
    std::mutex mutex_;
    std::vector<std::string> database_;  // guarded by mutex_
    std::vector<std::string> logos_;     // guarded by mutex_
    std::set<std::thread::id> threads_;  // guarded by mutex_
};

class receiver {
 public:
    receiver() = default;
    receiver(const receiver&) = delete;
    receiver& operator=(const receiver&) = delete;
    virtual ~receiver() = default;

    virtual void set_date_time(const spi::MotDateTime& t) = 0;
    virtual void set_service(const spi::ServElemId& service, std::uint16_t ensemble) = 0;
    virtual void feed(const carousel_object& object, const object_version& version) = 0;
    // False: there is no such call.
    virtual bool resend() = 0;
    // The host-facing layer keeps stored programmes to itself.
    virtual bool reports_programmes() const = 0;

    received_calls received;
};

}  // namespace soak

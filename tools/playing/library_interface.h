// The library as the player sees it: one set of calls for both of its interfaces.
#pragma once

#include <memory>
#include <string>

#include "tools/playing/notification_queue.h"
#include "tools/recording/notification.h"
#include "tools/recording/recording.h"

namespace dabspi {

class library_interface {
 public:
    library_interface() = default;
    library_interface(const library_interface&) = delete;
    library_interface& operator=(const library_interface&) = delete;
    // Ends the library's threads.
    virtual ~library_interface() = default;

    virtual void set_date_time(const spi::MotDateTime& now) = 0;
    virtual void set_current_service(const service_id& service, std::uint16_t ensemble) = 0;
    virtual void feed(const feed_mot_body& object) = 0;
    virtual void resend_now_next() = 0;

    // Leaves the library running for the rest of the process: for one that hangs, whose destruction might
    // never return.
    virtual void abandon() = 0;
};

// Both start the library with the storage path given, put its notifications into the queue, and throw
// std::runtime_error with a text for the user when the logo root cannot be made.
std::unique_ptr<library_interface> start_wrapper(const std::string& storage_path,
                                                 std::shared_ptr<notification_queue> queue);
std::unique_ptr<library_interface> start_core(const std::string& storage_path,
                                              std::shared_ptr<notification_queue> queue);

}  // namespace dabspi

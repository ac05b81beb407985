// The core of dabspi, for hosts that use it directly (hosts of the middleware start with
// spi_wrap/to_spi_server.h).
//
// A server decodes DAB Service and Programme Information: feed it the MOT objects of an SPI data service, the
// service that is being listened to, and the time; it tells its listener what is on now and next, each
// programme that it stores, and each station logo that it has written as a PNG file.
//
// Threads. Constructing a server starts six threads named "dabspi"; destroying it ends them. Every operation
// only queues an event and returns at once. All operations of a server must come from one thread, or be kept
// apart by the host. The listener is called on one of the library's threads (see spi_listener.h). Several
// servers may live in one process; they share one logo root, that of the last one constructed.
//
// Errors. No operation reports one. Out of memory, an operation throws std::bad_alloc and the server stays
// usable. The constructor throws what the standard library throws, and then leaves nothing behind.
//
// Destruction: each worker handles what its own queue holds by then; what that leads to may be lost. Whoever
// needs all of it waits with wait_until_quiet first. Destruction always returns, unless the listener does
// not. Never destroy a server from inside a listener call.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/dabspi_export.h"
#include "src/event/batch_backend.h"
#include "src/event/quiet.h"
#include "src/event/term_lock.h"
#include "src/parse/mot_body.h"
#include "src/parse/mot_date_time.h"
#include "src/parse/serv_elem_id.h"
#include "src/server/spi_listener.h"

namespace spi {

class SpiServer final : public term_event_proc {
 public:
    // The server shares the ownership of `listener` (null: nothing is notified). `temp_root` is a directory
    // for temporary files, of which the library makes none; `logo_root` is where logos are written, as
    // `logo_root` + "/" + name. Neither directory is created here.
    DABSPI_EXPORT SpiServer(std::shared_ptr<ISpiListener> listener, const std::string& temp_root,
                            const std::string& logo_root);
    DABSPI_EXPORT ~SpiServer() override;

    // One received MOT object (ETSI EN 301 234). ContentType 7 is parsed as a binary SPI object (TS 102 371)
    // and 2 is taken as an image; others are dropped silently. `service` is the data service that it was
    // received with. The body is moved from and left empty, unless there is
    // no memory for the event: then std::bad_alloc is thrown, and the body may be as it was.
    DABSPI_EXPORT void FeedMotBody(MotBodyMetadata metadata, MotBody&& body, ServElemId service);

    // The service that is being listened to, and the ensemble that carries it (0: none). A change from one
    // ensemble to another, or to none, forgets everything that was received; the first ensemble after none
    // forgets nothing. (Objects that the parser has not read by then are filed after the change:
    // wait_until_quiet before it leaves none.)
    DABSPI_EXPORT void SetCurrentService(ServElemId& service, unsigned short ensemble);

    // The current local date and time. The library has no clock of its own: now and next move on when this is
    // called.
    DABSPI_EXPORT void SetDateTime(MotDateTime& now);

    // Asks for the current now and next once more, set or not.
    DABSPI_EXPORT void ResendNowNext();

    // True when `ensemble` is not the current one, which it then becomes, or when none is current. Used by
    // SetCurrentService.
    DABSPI_EXPORT bool check_ensemble(unsigned short ensemble);

    // The server's own worker, not for hosts: takes the termination lock.
    void pre() override;
    // The server's own worker, not for hosts: counts the answers to EC_TERM.
    void process_event(event& e) override;

 private:
    void register_workers();
    void unregister_workers() noexcept;
    void send_to(_qid destination, std::shared_ptr<i_evt_base> payload);

    batch_backend backend_;
    std::uint16_t ensemble_ = 0;   // the current ensemble; 0: none. The host's thread only
    std::uint8_t terminated_ = 0;  // EC_TERM answers so far. The server's thread only
};

}  // namespace spi

// The routed record `event` and the base of everything that it can carry.
//
// A payload is made once with std::make_shared and travels as std::shared_ptr<i_evt_base>; copies of an event
// share it. It is never changed once it is posted, since several workers may hold it at the same time. (One
// exception: a MOT body has a single receiver, which moves the bytes out.) It carries its own code; receivers
// downcast by it. No worker keeps a payload beyond its handler, but to send it on: `wait_until_quiet`
// counts on that.
#pragma once

#include <memory>
#include <utility>

#include "src/event/event_names.h"

namespace spi {

// The base of all payloads. Payloads count themselves while they live, for `wait_until_quiet`.
class i_evt_base {
 public:
    // For derived classes, which name their code.
    explicit i_evt_base(event_code event);
    i_evt_base(const i_evt_base&) = delete;
    i_evt_base& operator=(const i_evt_base&) = delete;

    const event_code code;  // what the event says

    // Does nothing and returns 0; no payload overrides it.
    virtual int exec();
    virtual ~i_evt_base();
};

// One event on its way.
struct event {
    _qid destination = QID_NONE;          // the queue that it is meant for
    std::shared_ptr<i_evt_base> payload;  // may be empty

    // Without destination and payload: never handed to anybody.
    event() = default;
    // `carried` on its way to the queue `to`.
    event(_qid to, std::shared_ptr<i_evt_base> carried) : destination(to), payload(std::move(carried)) {}

    // The payload's code; EC_NONE without one.
    event_code code() const { return payload ? payload->code : EC_NONE; }
};

}  // namespace spi

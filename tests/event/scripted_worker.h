// A worker whose handler and hooks a test supplies, and payloads to send it.
#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "src/event/event_proc.h"
#include "src/event/outbox.h"

struct numbered_event : spi::i_evt_base {
    const int number;
    explicit numbered_event(int n, spi::event_code event = spi::EC_SERVINFO) : i_evt_base(event), number(n) {}
};

inline std::shared_ptr<numbered_event> numbered(int n, spi::event_code code = spi::EC_SERVINFO) {
    return std::make_shared<numbered_event>(n, code);
}
inline int number_of(const spi::event& e) {
    return dynamic_cast<const numbered_event&>(*e.payload).number;
}

class scripted_worker final : public spi::event_proc {
 public:
    using handler = std::function<void(spi::event&)>;
    using hook = std::function<void()>;

    // When what the handler sends leaves: at once as from most workers, with the turn's end as from the
    // parser, or later, while events of the same code follow, as from the database.
    enum sending { kAtOnce, kWithTheTurn, kWithTheLastOfTheCode };

    scripted_worker(spi::_qid id, handler on_event, hook on_pre = {}, hook on_post = {},
                    sending how = kAtOnce)
        : event_proc(id, spi::worker_duties{}),
          how_(how),
          on_event_(std::move(on_event)),
          on_pre_(std::move(on_pre)),
          on_post_(std::move(on_post)) {
        begin(*this);
    }
    ~scripted_worker() override { destroy_proc(); }

    using event_proc::post;
    using event_proc::process_event;
    using event_proc::started;

    void pre() override {
        if (on_pre_) on_pre_();
    }
    void post() override {
        results_.flush();
        if (on_post_) on_post_();
    }
    void process_event(spi::event& e) override {
        if (how_ == kAtOnce) return handle(e);
        spi::outbox::turn turn(results_);
        handle(e);
        if (how_ == kWithTheLastOfTheCode && follows(e.code())) turn.go_on();
    }

    // In a handler: as `sending` says.
    int send_result(std::shared_ptr<spi::i_evt_base> payload, spi::_qid destination) {
        return results_.send(std::move(payload), destination);
    }

    // The answer that every worker owes.
    void answer(spi::event& e) { event_proc::process_event(e); }

 private:
    void handle(spi::event& e) {
        if (on_event_) on_event_(e);
    }

    const sending how_;
    spi::outbox results_{*this, spare_node()};
    const handler on_event_;
    const hook on_pre_;
    const hook on_post_;
};

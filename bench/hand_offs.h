// Many events from a worker through the router to another, stage by stage: each stage begins when all of its
// events are there, so what it does with locks and notifications is the same in every run.
#pragma once

#include <memory>

#include "bench/counted_locks.h"
#include "src/event/batch_backend.h"
#include "src/event/event_proc.h"
#include "src/event/outbox.h"
#include "testkit/journal.h"

namespace bench {

struct plain_event : spi::i_evt_base {
    explicit plain_event(spi::event_code said) : i_evt_base(said) {}
};

class hand_offs {
 public:
    explicit hand_offs(unsigned events) : events_(events) {
        for (spi::event_proc* const worker : workers_)
            router_.register_queue(worker);
    }
    ~hand_offs() {
        for (spi::event_proc* const worker : workers_)
            router_.unregister_queue(worker->queue_id(), false);
        router_.destroy_proc();
    }
    hand_offs(const hand_offs&) = delete;
    hand_offs& operator=(const hand_offs&) = delete;

    void play() {
        router_.post(said(spi::EC_SERV), spi::QID_LOGODB);  // the router is held from here
        holder_.reached.wait();
        const std::uint64_t before = locks_and_notifications();
        for (unsigned i = 0; i < events_; ++i)
            sender_.post(said(spi::EC_EVTINFO), spi::QID_EVTDB);
        forget_locks(locks_and_notifications() - before);  // one for each, whatever becomes of it
        sender_.post(said(spi::EC_RESEND), spi::QID_EVTDB);
        sender_.open();
        sender_.all_sent.wait();
        router_.post(said(spi::EC_TEMPROOT), spi::QID_LOGODB);
        holder_.may_pass.open();
        holder_.passed.wait();
        receiver_.open();
        receiver_.all_there.wait();
    }

 private:
    static std::shared_ptr<spi::i_evt_base> said(spi::event_code code) {
        return std::make_shared<plain_event>(code);
    }

    // Of a class with its own post_event, which the router calls: it waits there.
    class holding_worker final : public spi::event_proc {
     public:
        holding_worker() : event_proc(spi::QID_LOGODB, spi::worker_duties{}) { begin(*this); }
        ~holding_worker() override { destroy_proc(); }
        int post_event(spi::event e) override {
            if (e.code() == spi::EC_TEMPROOT) {
                passed.open();
                return 0;
            }
            reached.open();
            may_pass.wait();
            return 0;
        }
        gate reached, may_pass, passed;
    };

    // As the database: what comes goes on, in the same payload. An event of another code tells that all are.
    class sending_worker final : public spi::event_proc {
     public:
        sending_worker() : event_proc(spi::QID_EVTDB, spi::worker_duties{}) { begin(*this); }
        ~sending_worker() override { destroy_proc(); }
        void process_event(spi::event& e) override {
            spi::outbox::turn turn(results_);
            if (e.code() == spi::EC_RESEND) return all_sent.open();
            results_.send(e.payload, spi::QID_CBHDL);
            if (follows(e.code())) turn.go_on();
        }
        void pre() override { may_begin_.wait(); }
        void open() { may_begin_.open(); }
        gate all_sent;

     private:
        gate may_begin_;
        spi::outbox results_{*this, spare_node()};
    };

    class receiving_worker final : public spi::event_proc {
     public:
        explicit receiving_worker(unsigned events)
            : event_proc(spi::QID_CBHDL, spi::worker_duties{}), left_(events) {
            begin(*this);
        }
        ~receiving_worker() override { destroy_proc(); }
        void process_event(spi::event&) override {
            if (--left_ == 0) all_there.open();
        }
        void pre() override { may_begin_.wait(); }
        void open() { may_begin_.open(); }
        gate all_there;

     private:
        gate may_begin_;
        unsigned left_;
    };

    const unsigned events_;
    spi::batch_backend router_;
    holding_worker holder_;
    sending_worker sender_;
    receiving_worker receiver_{events_};
    spi::event_proc* const workers_[3] = {&holder_, &sender_, &receiver_};
};

}  // namespace bench

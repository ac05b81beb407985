// A worker in the place of one of the server's four: keeps what the router delivers to it, and what it
// handles. The folder recording_workers holds headers with the names of the real workers' headers; the server
// is compiled against them, so that its events are seen from outside.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "src/event/event_proc.h"
#include "src/parse/mot_body.h"
#include "src/parse/mot_date_time.h"
#include "src/parse/serv_elem_id.h"
#include "testkit/journal.h"

// What an event was, without keeping its payload alive.
struct delivery {
    spi::_qid worker = spi::QID_NONE;
    spi::_qid destination = spi::QID_NONE;
    spi::event_code code = spi::EC_NONE;
    const void* payload = nullptr;  // to be compared only
    std::string text;               // a directory, or a body's bytes
    std::uint16_t ensemble = 0;
    spi::MotDateTime now;
    spi::ServElemId service;
    spi::MotBodyMetadata metadata;
    const void* listener = nullptr;
};

// "CBHDL<-EC_TERM"
std::string brief(const delivery& d);

class recording_worker : public spi::event_proc {
 public:
    int post_event(spi::event e) override;
    void process_event(spi::event& e) override;

    // Of all servers of the process, in order.
    static journal<delivery>& delivered();  // by the router, on its thread
    static journal<delivery>& handled();    // by the workers, each on its own
    static journal<spi::_qid>& made();
    static journal<spi::_qid>& ended();
    static void forget_all();
    // Called as each worker ends, on the thread that destroys it; cleared by forget_all.
    static void on_end(std::function<void()> hook);

 protected:
    explicit recording_worker(spi::_qid id);
    ~recording_worker() override;
    void end();
};

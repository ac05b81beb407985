// What things take of the heap: bytes held and blocks taken, counted by operator new, and the resident size
// of an idle server. Prints one JSON object. Counted, not timed: the figures are the same in every run.
#include <cstdio>
#include <fstream>
#include <string>

#include "bench/event_sink.h"
#include "bench/live_core.h"
#include "bench/material.h"
#include "src/event/payloads.h"
#include "src/event_db/spi_event_db.h"
#include "src/logo_db/spi_logo_db.h"
#include "src/parse/pi_body_parser.h"
#include "testkit/bodies.h"
#include "testkit/counted_heap.h"

namespace {

using namespace bench;

bool first = true;
void print(const char* name, double value) {
    std::printf("%s\n  \"%s\": %.1f", first ? "{" : ",", name, value);
    first = false;
}

// Of /proc/self/status: "VmRSS", with the pages of files that the process has touched (the kernel maps 16 of
// them at a time, so one more function of the C library may count as 64 KiB), or "RssAnon", its own memory.
long resident_kib(const std::string& which) {
    std::ifstream status("/proc/self/status");
    std::string word;
    long kib = 0;
    while (status >> word)
        if (word == which + ":") status >> kib;
    return kib;
}

// Keeps its gate closed: what is posted stays in its queue.
class closed_worker final : public spi::event_proc {
 public:
    closed_worker() : event_proc(spi::QID_EVTDB, deferred{}) {}
    ~closed_worker() override { destroy_proc(); }
};

// The parser's programmes in the queue of a worker that does not take them.
class queueing_router final : public spi::event_backend {
 public:
    explicit queueing_router(spi::event_proc& queue) : event_backend(deferred{}), queue_(queue) {}
    ~queueing_router() override { destroy_proc(); }
    int post_event(spi::event e) override { return queue_.post_event(std::move(e)); }

 private:
    spi::event_proc& queue_;
};

void queued_programmes() {
    constexpr unsigned kCount = 1000;
    const spi_builder::bytes object = programme_object(0, kCount, {});
    closed_worker queue;
    queueing_router router(queue);
    spi::event_proc parser(spi::QID_PARSE);
    router.register_queue(&parser);
    const counted_heap heap;
    spi::PiBodyParser(parser, kEnsemble).parse(body_of(object));  // the body is given back after it
    print("bytes per queued programme", static_cast<double>(heap.live()) / kCount);
    print("blocks per queued programme", static_cast<double>(heap.blocks()) / kCount);
    router.unregister_queue(spi::QID_PARSE, false);
}

void queued_bodies() {
    constexpr unsigned kCount = 1000;
    closed_worker queue;
    const counted_heap heap;
    for (unsigned i = 0; i < kCount; ++i) {
        queue.post(std::make_shared<spi::spi_body_event>(
                       spi::MotBodyMetadata{7, 7, 1, "20260310_E1C00221.EHB"}, spi::MotBody(), station(0)),
                   spi::QID_PARSE);
    }
    print("bytes per queued object, without its body", static_cast<double>(heap.live()) / kCount);
    print("blocks per queued object, without its body", static_cast<double>(heap.blocks()) / kCount);
}

void stored_programmes() {
    constexpr unsigned kServices = 20;
    event_sink sent(5000);
    spi::SpiEventDb db;
    sent.register_queue(&db);
    db.cfu_date_time(clock_at(600));
    std::vector<spi::PiScheduleProgramme> day;
    for (unsigned minute = 0; minute < kMinutesOfTwoDays; minute += 30)
        day.push_back(programme_at(minute));
    const counted_heap heap;
    for (unsigned service = 0; service < kServices; ++service)
        for (const spi::PiScheduleProgramme& programme : day)
            db.handle_programme(station(service), programme);
    const double programmes = static_cast<double>(kServices * day.size());
    const double blocks = static_cast<double>(heap.blocks());
    sent.clear();
    print("bytes per stored programme", static_cast<double>(heap.live()) / programmes);
    print("blocks per filed programme, its notification included", blocks / programmes);
    sent.unregister_queue(spi::QID_EVTDB, false);
}

void announcements() {
    constexpr unsigned kCount = 1000;
    spi::SiServiceInfo info;
    for (unsigned i = 0; i < kCount; ++i) {
        spi::SpiLogoInfo logo;
        logo.service = station(i);
        logo.image_format = spi::LOGO_FORMAT_PNG;
        logo.size_code = spi::LOGO_SIZE_320x240;
        logo.name = "logos/" + std::to_string(i) + "_320x240.png";
        info.logos.push_back(logo);
    }
    spi::SpiLogoDb logos;
    const counted_heap heap;
    logos.handle_meta(station(0), info);
    print("bytes per announcement", static_cast<double>(heap.live()) / kCount);
    print("blocks per announcement", static_cast<double>(heap.blocks()) / kCount);
}

void end_to_end() {
    constexpr unsigned kObjects = 20;
    constexpr unsigned kProgrammes = 100;
    live_core core;
    core.set_clock(600);
    core.tune(0x3000);
    std::vector<spi::MotBody> bodies;
    for (unsigned i = 0; i < kObjects; ++i)
        bodies.push_back(body_of(programme_object(i, kProgrammes, {})));
    core.settle();
    const counted_heap heap;
    for (unsigned i = 0; i < kObjects; ++i)
        core.feed(std::move(bodies[i]), "object " + std::to_string(i));
    core.settle();
    print("blocks per programme, from the host to the listener",
          static_cast<double>(heap.blocks()) / (kObjects * kProgrammes));
}

void idle_server() {
    const long before = resident_kib("VmRSS");
    const long own_before = resident_kib("RssAnon");
    const counted_heap heap;
    live_core core;
    core.settle();
    print("heap of an idle server, bytes", static_cast<double>(heap.live()));
    print("own memory of an idle server, KiB, its stacks included",
          static_cast<double>(resident_kib("RssAnon") - own_before));
    print("resident size of an idle server, KiB, with the pages of code touched first",
          static_cast<double>(resident_kib("VmRSS") - before));
}

}  // namespace

int main() {
    idle_server();  // before anything else has used the pages
    queued_programmes();
    queued_bodies();
    stored_programmes();
    announcements();
    end_to_end();
    std::printf("\n}\n");
}

// The whole chain: any bytes in any container, to the calls of a receiver. Memory and work stay within their
// bounds, every body is what its header says, and calls begin with the ensemble where there is one.
#include "fuzz/fuzz_support.h"
#include "tools/air/calls/multiplex_calls.h"
#include "tools/air/container/open_frames.h"

namespace {

using namespace dabspi;

constexpr std::size_t kMemory = std::size_t{1} << 20;

void expect_within_bounds(const air::multiplex_reception& reception) {
    std::size_t memory = 0;
    for (const air::carousel_report& each : reception.carousels()) {
        memory += each.carousel.memory;
        expect(each.component.sub_channel < 64 && each.component.address < 1024, "a place of a carousel");
        for (const air::object_statistics& object : each.carousel.objects)
            expect(object.segments == 0 || object.segments_held <= object.segments, "segments of all");
    }
    expect(memory <= kMemory, "the carousels share their memory");
    expect(reception.carousels().size() <= 3, "no more carousels than allowed");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    const std::uint8_t how = data[0];
    auto bytes = std::make_unique<air::memory_source>(air::byte_view(data + 1, size - 1),
                                                      (how & 1) != 0 ? 1U + how : size);
    air::opened_frames in = air::open_frames(std::move(bytes), "fuzzed");
    if (in.frames == nullptr) {
        expect(!in.error.empty(), "it is said why");
        return 0;
    }
    air::calls_options options;
    options.which = (how & 2) != 0 ? air::delivery::once : air::delivery::every;
    options.service = (how & 4) != 0 ? "all" : (how & 8) != 0 ? "C221" : "";
    options.limits.memory = kMemory;
    options.limits.carousels = 3;
    air::multiplex_calls calls(*in.frames, options);
    bool tuned = false;
    bool fed = false;
    while (const auto each = calls.next()) {
        expect(each->frame <= calls.reception().frame_number(), "calls are of frames that were read");
        if (std::holds_alternative<set_current_service>(each->what)) tuned = true;
        if (const auto* const object = std::get_if<feed_mot_body>(&each->what)) {
            expect(object->body != nullptr, "a body");
            fed = true;
        }
    }
    expect(!fed || tuned || !calls.reception().description().eid || !calls.error().empty(),
           "the service comes first");
    expect_within_bounds(calls.reception());
    return 0;
}

// The programme database under calls that the input decides, against its model: whatever is filed, whenever
// the clock moves and whichever service is chosen, both send the same, event by event.
#include <fuzzer/FuzzedDataProvider.h>

#include <string>

#include "fuzz/fuzz_support.h"
#include "fuzz/without_threads.h"
#include "src/event_db/spi_event_db.h"
#include "testkit/compared_calls.h"
#include "testkit/spi_builder.h"

namespace {

constexpr int kLongestStory = 60;  // calls
// The leap day and a month's end are near.
const std::uint32_t kFirstDay = spi_builder::mjd(2028, 2, 27);

spi::ServElemId any_service(FuzzedDataProvider& input) {
    static const spi::ServElemId kServices[] = {{0xC221, 0xE1, 0},    {0xC221, 0xE1, 1}, {0xC222, 0xE1, 0},
                                                {0x100C221, 0xE1, 0}, {0xC221, 0, 0},    {}};
    return input.PickValueInArray(kServices);
}

spi::PiScheduleProgramme any_programme(FuzzedDataProvider& input) {
    spi::PiScheduleProgramme p;
    p.crid = input.ConsumeIntegral<std::uint8_t>();
    if (input.ConsumeBool()) p.name = std::string(1, input.ConsumeIntegralInRange('A', 'C'));
    const int day = input.ConsumeIntegralInRange(-2, 5);
    p.time.mjd = day == 5 ? 0 : kFirstDay + static_cast<std::uint32_t>(day + 2);
    if (input.ConsumeBool()) {  // any fields that the coding holds
        p.time.hour = input.ConsumeIntegralInRange<std::uint8_t>(0, 31);
        p.time.minute = input.ConsumeIntegralInRange<std::uint8_t>(0, 63);
        p.time.lto = input.ConsumeIntegralInRange<std::int8_t>(-30, 30);
        p.duration = input.ConsumeIntegral<std::uint16_t>();
    } else {  // programmes that meet
        p.time.hour = input.ConsumeIntegralInRange<std::uint8_t>(0, 23);
        p.duration = static_cast<std::uint16_t>(3600 * input.ConsumeIntegralInRange(0, 3));
    }
    return p;
}

spi::MotDateTime any_time(FuzzedDataProvider& input) {
    static const spi::MotDateTime kDays[] = {{2028, 2, 27, 0, 0},
                                             {2028, 2, 28, 0, 0},
                                             {2028, 2, 29, 0, 0},
                                             {2028, 3, 1, 0, 0},
                                             {2028, 3, 2, 0, 0}};
    spi::MotDateTime t = input.PickValueInArray(kDays);
    t.hour = input.ConsumeIntegralInRange<std::uint8_t>(0, 23);
    t.minute = input.ConsumeBool() ? input.ConsumeIntegralInRange<std::uint8_t>(0, 59) : std::uint8_t{0};
    return t;
}

event_db::call any_call(FuzzedDataProvider& input) {
    event_db::call c;
    switch (input.ConsumeIntegralInRange(0, 9)) {
        case 0: c.kind = event_db::call::kResend; break;
        case 1: c.kind = event_db::call::kClear; break;
        case 2:
            c.kind = event_db::call::kService;
            c.service = any_service(input);
            break;
        case 3:
        case 4:
        case 5:
            c.kind = event_db::call::kDateTime;
            c.time = any_time(input);
            break;
        default:
            c.kind = event_db::call::kProgramme;
            c.service = any_service(input);
            c.programme = any_programme(input);
    }
    return c;
}

struct subject {
    const without_threads none;
    keeping_router router;
    spi::SpiEventDb db;
    subject() { router.register_queue(&db); }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    subject tried;
    event_db::database_model model;
    for (int calls = 0; calls < kLongestStory && input.remaining_bytes() > 0; ++calls) {
        const event_db::call c = any_call(input);
        spi::event e(spi::QID_EVTDB, event_db::payload_for(c));
        tried.db.process_event(e);
        std::vector<std::string> sent;
        for (const spi::event& each : tried.router.events)
            sent.push_back(event_db::event_text(each));
        tried.router.events.clear();
        expect(sent == event_db::sent_by(model, c), "database and model send the same");
    }
    return 0;
}

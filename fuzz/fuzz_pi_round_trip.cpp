// Schedules made from the input, built into an object by the builder, decoded by the library: the programmes
// that come out must be those that went in, read by a receiver's rules.
#include <fuzzer/FuzzedDataProvider.h>

#include "fuzz/built_objects.h"
#include "fuzz/fuzz_support.h"
#include "src/event/payloads.h"
#include "src/parse/body/pi_body_parser.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static sender& out = *new sender;
    FuzzedDataProvider input(data, size);
    const built::schedule_object made = built::make_schedules(input);
    spi::PiBodyParser(out.worker, made.eid).parse(body_of(made.object.data(), made.object.size()));

    expect(out.router.events.size() == made.expected.size(), "as many programmes as have a service");
    for (std::size_t i = 0; i < made.expected.size(); ++i) {
        const auto& got = dynamic_cast<const spi::pi_programme_event&>(*out.router.events[i].payload);
        const built::programme& want = made.expected[i];
        const spi::PiScheduleProgramme& p = got.programme;
        expect(got.service.sid == want.service.sid && got.service.ecc == want.service.ecc &&
                   got.service.scids == want.service.scids,
               "service");
        expect(p.name == want.name, "name");
        expect(p.duration == want.duration && p.crid == want.short_id, "duration and short identifier");
        expect(p.time.mjd == want.mjd && p.time.hour == want.hour && p.time.minute == want.minute &&
                   p.time.second == want.second && p.time.lto == want.lto,
               "start");
    }
    out.router.events.clear();
    return 0;
}

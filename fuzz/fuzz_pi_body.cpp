// A programme information body of any content: nothing outside it is read, the walk ends, and what it causes
// stays linear in its size.
#include "fuzz/fuzz_support.h"
#include "src/event/payloads.h"
#include "src/parse/body/pi_body_parser.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static sender& out = *new sender;
    if (size < 2) return 0;
    const auto eid = static_cast<std::uint16_t>(data[0] << 8 | data[1]);
    spi::PiBodyParser(out.worker, eid).parse(body_of(data + 2, size - 2));

    expect(out.router.events.size() <= 2 * size + 4096, "one event for each opened scope at most");
    std::size_t copied = 0;
    for (const spi::event& e : out.router.events) {
        const auto& sent = dynamic_cast<const spi::pi_programme_event&>(*e.payload);
        expect(e.destination == spi::QID_EVTDB, "programmes go to the programme database");
        expect(sent.service.sid != 0 && sent.service.ecc != 0, "a programme has a service");
        expect(sent.programme.eid == eid, "a programme carries the ensemble");
        copied += sent.programme.name.size();
    }
    // What tokens expand to has a budget too.
    expect(copied <= 255 * size + 65536, "names are linear in the body");
    out.router.events.clear();
    return 0;
}

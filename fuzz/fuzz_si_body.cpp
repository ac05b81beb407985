// A service information body of any content: nothing outside it is read, the walk ends, and what it causes
// stays linear in its size.
#include "fuzz/fuzz_support.h"
#include "src/event/payloads.h"
#include "src/parse/body/si_body_parser.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static sender& out = *new sender;
    spi::ServElemId service;
    service.sid = 0xE1C00098;
    spi::SiBodyParser(out.worker).parse(service, body_of(data, size));

    std::size_t records = 0;
    std::size_t copied = 0;
    for (const spi::event& e : out.router.events) {
        const auto& sent = dynamic_cast<const spi::si_service_event&>(*e.payload);
        expect(e.destination == spi::QID_LOGODB, "services go to the logo store");
        expect(sent.service == service, "a service comes with the one that it was received with");
        records += 1 + sent.info.logos.size();
        copied += sent.info.name.size();
        for (const spi::SpiLogoInfo& logo : sent.info.logos) {
            copied += logo.name.size();
            expect(logo.image_format <= 2 && logo.size_code <= 6, "formats and sizes are of the known ones");
        }
    }
    expect(records <= 2 * size + 4096, "one record for each opened scope at most");
    // What tokens expand to has a budget too.
    expect(copied <= 255 * size + 65536, "names are linear in the body");
    out.router.events.clear();
    return 0;
}

// Services made from the input, built into an object by the builder, decoded by the library: the services and
// logo announcements that come out must be those that went in, read by a receiver's rules.
#include <fuzzer/FuzzedDataProvider.h>

#include "fuzz/built_objects.h"
#include "fuzz/fuzz_support.h"
#include "src/event/payloads.h"
#include "src/parse/body/si_body_parser.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static sender& out = *new sender;
    FuzzedDataProvider input(data, size);
    const built::service_object made = built::make_services(input);
    spi::SiBodyParser(out.worker).parse({}, body_of(made.object.data(), made.object.size()));

    expect(out.router.events.size() == made.expected.size(), "as many services");
    for (std::size_t i = 0; i < made.expected.size(); ++i) {
        const auto& got = dynamic_cast<const spi::si_service_event&>(*out.router.events[i].payload).info;
        const built::service& want = made.expected[i];
        expect(got.id.sid == want.id.sid && got.id.ecc == want.id.ecc && got.id.scids == want.id.scids,
               "identifier");
        expect(got.name == want.name, "name");
        expect(got.logos.size() == want.logos.size(), "as many logos");
        auto logo = got.logos.begin();
        for (const built::logo& announced : want.logos) {
            expect(logo->service == got.id, "a logo's station");
            expect(logo->image_format == announced.format && logo->size_code == announced.size_code,
                   "classification");
            expect(logo->name == announced.url, "content name");
            ++logo;
        }
    }
    out.router.events.clear();
    return 0;
}

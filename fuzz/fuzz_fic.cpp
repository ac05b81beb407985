// FIBs of any content, with right checksums: the description made of them is bounded, its texts are UTF-8,
// and feeding the same again changes nothing that was not changed again in between.
#include <vector>

#include "fuzz/fuzz_support.h"
#include "testkit/multiplex/appending.h"
#include "tools/air/fic/fic_decoder.h"
#include "tools/text/utf8.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace dabspi::air;
    namespace mb = multiplex_builder;
    fic_decoder decoder;
    for (std::size_t at = 0; at < size; at += 30) {
        mb::bytes block(data + at, data + std::min(size, at + 30));
        block.resize(30, 0xFF);
        const mb::bytes fib = mb::with_crc16(block);
        frame each;
        each.fic = fib;
        const fic_news news = decoder.feed(each);
        if (news.minute)
            expect(news.minute->hour < 24 && news.minute->minute < 60 && news.minute->day <= 31,
                   "a time of day");
        if (news.changed || at == 0) continue;
        expect(!decoder.feed(each).minute, "a minute begins once");
    }
    const ensemble all = decoder.describe();
    expect(all.services.size() <= kMostServices && all.sub_channels.size() <= 64,
           "the description is bounded");
    expect(dabspi::is_well_formed_utf8(all.label), "labels are UTF-8");
    for (const described_service& service : all.services) {
        expect(dabspi::is_well_formed_utf8(service.label), "labels are UTF-8");
        expect(service.components.size() <= 15, "a service has as many components as its FIG says");
    }
    for (const spi_component& each : spi_components(all))
        expect(each.sub_channel < 64 && each.address < 1024 && each.scids < 16,
               "sub-channel, address and SCIdS are in range");
    unreadable_spi(all);
    expect(decoder.statistics().fibs_crc_wrong == 0, "the checksums are right");
    return 0;
}

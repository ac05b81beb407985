// The whole server, fed with a sequence of calls that the input decides: objects from the builder and of any
// bytes, images, services, ensembles, clocks. It becomes quiet after each sequence, and what the listener
// hears is consistent.
#include <fuzzer/FuzzedDataProvider.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "fuzz/built_objects.h"
#include "fuzz/fuzz_support.h"
#include "src/server/spi_server.h"

namespace {

struct listener final : spi::ISpiListener {
    std::string root;
    void ProgramInfoReceived(const spi::ServElemId& service, spi::SpiProgramInfo& info) override {
        expect(service.sid != 0 && service.ecc != 0 && info.duration <= 1092, "a stored programme");
    }
    void ProgramNowNextUpdated(spi::SpiProgramInfo& now, spi::SpiProgramInfo& next) override {
        expect(now.duration <= 1092 && next.duration <= 1092, "now and next");
    }
    void StationLogoReceived(spi::SpiLogoInfo& logo) override {
        expect(logo.image_format == 2 && (logo.size_code == 3 || logo.size_code == 4),
               "only PNG of two sizes");
        expect(logo.name.find('/') == std::string::npos, "a name inside the root");
        expect(access((root + "/" + logo.name).c_str(), F_OK) == 0, "the file is there");
    }
};

spi::ServElemId small_service(FuzzedDataProvider& input) {
    spi::ServElemId id;
    id.sid = input.ConsumeIntegralInRange<std::uint32_t>(0x1000, 0x1003);
    id.ecc = input.ConsumeIntegralInRange<std::uint8_t>(0, 2);
    return id;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    auto notified = std::make_shared<listener>();
    notified->root = root();
    spi::SpiServer server(notified, notified->root, notified->root);
    for (int calls = 0; calls < 40 && input.remaining_bytes() > 0; ++calls) {
        switch (input.ConsumeIntegralInRange(0, 6)) {
            case 0: {
                spi::MotDateTime now{2026, 3, input.ConsumeIntegralInRange<std::uint8_t>(1, 4),
                                     input.ConsumeIntegralInRange<std::uint8_t>(0, 24),
                                     input.ConsumeIntegral<std::uint8_t>()};
                server.SetDateTime(now);
                break;
            }
            case 1: {
                spi::ServElemId id = small_service(input);
                server.SetCurrentService(id, input.ConsumeIntegralInRange<std::uint16_t>(0, 2));
                break;
            }
            case 2: server.ResendNowNext(); break;
            case 3: {
                const spi_builder::bytes object = built::make_schedules(input).object;
                server.FeedMotBody({7, 7, 1, "pi"}, body_of(object.data(), object.size()),
                                   small_service(input));
                break;
            }
            case 4: {
                const spi_builder::bytes object = built::make_services(input).object;
                server.FeedMotBody({7, 7, 0, "si"}, body_of(object.data(), object.size()),
                                   small_service(input));
                break;
            }
            default: {
                spi::MotBodyMetadata metadata{7, input.ConsumeBool() ? std::uint8_t{2} : std::uint8_t{7},
                                              input.ConsumeIntegralInRange<std::uint16_t>(0, 3),
                                              input.ConsumeRandomLengthString(24)};
                const std::string body = input.ConsumeRandomLengthString(400);
                server.FeedMotBody(std::move(metadata),
                                   body_of(reinterpret_cast<const std::uint8_t*>(body.data()), body.size()),
                                   small_service(input));
            }
        }
    }
    expect(spi::wait_until_quiet(std::chrono::seconds(20)), "quiet after a finite feed");
    return 0;
}

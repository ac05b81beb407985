// Filing: programmes into a full store, announcements of logos, and finding the announcement of an image. The
// references are bare maps of the same kind and size, one insertion or search each.
#include <map>
#include <memory>
#include <vector>

#include "bench/event_sink.h"
#include "bench/material.h"
#include "bench/paired.h"
#include "src/event/payloads.h"
#include "src/event_db/spi_event_db.h"
#include "src/logo_db/spi_logo_db.h"

namespace {

using namespace bench;

using bare_day = std::map<std::uint16_t, spi::PiScheduleProgramme>;
using bare_store = std::map<spi::ServElemId, std::map<std::uint32_t, std::shared_ptr<bare_day>>>;

void bare_file(bare_store& store, unsigned service, const spi::PiScheduleProgramme& programme) {
    std::shared_ptr<bare_day>& day = store[station(service)][programme.time.mjd];
    if (!day) day = std::make_shared<bare_day>();
    day->emplace(static_cast<std::uint16_t>(programme.time.hour * 60 + programme.time.minute), programme);
}

// One more programme for each of many services with 96 programmes each.
void file_programme(benchmark::State& state) {
    const auto services = static_cast<unsigned>(state.range(0));
    const bool repeated = state.range(1) != 0;
    event_sink sent(200'000);
    spi::SpiEventDb db;
    sent.register_queue(&db);
    db.cfu_date_time(clock_at(605));
    db.cfu_service(station(0x3000));
    bare_store store;
    const spi::PiScheduleProgramme one_more = programme_at(repeated ? 600 : 601);
    const auto figure = [&] {
        db.clear_db();
        for (unsigned service = 0; service < services; ++service) {
            for (unsigned minute = 0; minute < kMinutesOfTwoDays; minute += 30)
                db.handle_programme(station(service), programme_at(minute));
            sent.clear();
        }
        const double seconds = seconds_of([&] {
            for (unsigned service = 0; service < services; ++service)
                db.handle_programme(station(service), one_more);
        });
        sent.clear();
        return seconds;
    };
    const auto reference = [&] {
        store.clear();
        for (unsigned service = 0; service < services; ++service)
            for (unsigned minute = 0; minute < kMinutesOfTwoDays; minute += 30)
                bare_file(store, service, programme_at(minute));
        return seconds_of([&] {
            for (unsigned service = 0; service < services; ++service)
                bare_file(store, service, one_more);
        });
    };
    measure(state, figure, {{"map", reference}}, {static_cast<double>(services)});
    sent.unregister_queue(spi::QID_EVTDB, false);
}

std::string image_name(unsigned number) {
    return "logos/" + std::to_string(number) + "_320x240.jpg";
}

spi::SiServiceInfo description(unsigned first, unsigned count) {
    spi::SiServiceInfo info;
    for (unsigned i = 0; i < count; ++i) {
        spi::SpiLogoInfo logo;
        logo.service = station(first + i);
        logo.image_format = spi::LOGO_FORMAT_JPEG;  // announced, and never written: no file takes part
        logo.size_code = spi::LOGO_SIZE_320x240;
        logo.name = image_name(first + i);
        info.logos.push_back(logo);
    }
    return info;
}

// Per announcement, from none until all are there.
void announce(benchmark::State& state) {
    const auto count = static_cast<unsigned>(state.range(0));
    const spi::SiServiceInfo info = description(0, count);
    const auto figure = [&] {
        spi::SpiLogoDb logos;
        return seconds_of([&] { logos.handle_meta(station(0), info); });
    };
    const auto reference = [&] {
        std::map<std::string, std::vector<spi::SpiLogoInfo>> table;
        return seconds_of([&] {
            for (const spi::SpiLogoInfo& logo : info.logos)
                table[logo.name].push_back(logo);
        });
    };
    measure(state, figure, {{"map", reference}}, {static_cast<double>(count)});
}

// An image for each of ten announcements out of all, which uses them up.
void match_image(benchmark::State& state) {
    const auto count = static_cast<unsigned>(state.range(0));
    const spi::SiServiceInfo info = description(0, count);
    constexpr unsigned kImages = 10;
    const auto name_of = [count](unsigned image) { return image_name(image * (count / kImages)); };
    const auto figure = [&] {
        spi::SpiLogoDb logos;
        logos.handle_meta(station(0), info);
        std::vector<spi::MotBodyMetadata> images;
        for (unsigned i = 0; i < kImages; ++i)
            images.push_back({7, 2, 1, name_of(i)});
        return seconds_of([&] {
            for (const spi::MotBodyMetadata& image : images)
                logos.handle_bodyimg(image, spi::MotBody(), station(0));
        });
    };
    const auto reference = [&] {
        std::map<std::string, std::vector<spi::SpiLogoInfo>> table;
        for (const spi::SpiLogoInfo& logo : info.logos)
            table[logo.name].push_back(logo);
        std::vector<std::string> names;
        for (unsigned i = 0; i < kImages; ++i)
            names.push_back(name_of(i));
        return seconds_of([&] {
            for (const std::string& name : names)
                table.extract(name);
        });
    };
    measure(state, figure, {{"map", reference}}, {kImages});
}

BENCHMARK(file_programme)
    ->ArgsProduct({{10, 100, 1000}, {0, 1}})
    ->ArgNames({"services", "repeated"})
    ->UseManualTime()
    ->Iterations(8);
BENCHMARK(announce)->RangeMultiplier(10)->Range(10, 10'000)->UseManualTime()->Iterations(20);
BENCHMARK(match_image)->RangeMultiplier(10)->Range(10, 10'000)->UseManualTime()->Iterations(20);

}  // namespace

// The programme guide of a week with 300 services: read, and written in each format. Beside it the reference:
// every object decoded once, which no reader of the whole broadcast can leave out.
#include <benchmark/benchmark.h>

#include "testkit/spi_builder_objects.h"
#include "tools/export/guide_json.h"
#include "tools/export/spi_documents.h"
#include "tools/export/xmltv.h"
#include "tools/guide/guide_reader.h"
#include "tools/spi/decode.h"

namespace {

namespace sb = spi_builder;
using dabspi::guide::guide_reader;
using dabspi::guide::programme_guide;

constexpr unsigned kServices = 300;
constexpr unsigned kDays = 7;
constexpr unsigned kProgrammes = 36;  // of a day: one for forty minutes
constexpr std::uint32_t kFirstDay = 61109;

using objects = std::vector<std::shared_ptr<const dabspi::bytes>>;

const objects& week() {
    static const objects made = [] {
        objects all;
        for (unsigned service = 0; service < kServices; ++service)
            for (unsigned day = 0; day < kDays; ++day) {
                sb::schedule_data data;
                data.scope = sb::service_id{0xE1, 0xC185, 0xC000 + service, 0};
                for (unsigned i = 0; i < kProgrammes; ++i) {
                    sb::programme_data one;
                    one.name = {"", "Programme " + std::to_string(i), "A programme with a longer name"};
                    one.start = sb::local_time(kFirstDay + day, i * 40 / 60, i * 40 % 60, 2);
                    one.duration = 2400;
                    one.short_id = i;
                    data.programmes.push_back(one);
                }
                all.push_back(std::make_shared<const dabspi::bytes>(sb::pi_object({data})));
            }
        return all;
    }();
    return made;
}

programme_guide read() {
    guide_reader reader;
    for (const auto& each : week())
        reader.add_object(each, "", {});
    return reader.finish();
}

void programmes_per_second(benchmark::State& state) {
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * kServices * kDays * kProgrammes);
}

void guide_decode_alone(benchmark::State& state) {
    for ([[maybe_unused]] auto turn : state)
        for (const auto& each : week())
            benchmark::DoNotOptimize(dabspi::spi_object::decode(*each));
    programmes_per_second(state);
}
BENCHMARK(guide_decode_alone)->Unit(benchmark::kMillisecond);

void guide_read(benchmark::State& state) {
    for ([[maybe_unused]] auto turn : state)
        benchmark::DoNotOptimize(read());
    programmes_per_second(state);
}
BENCHMARK(guide_read)->Unit(benchmark::kMillisecond);

template <class Format>
void guide_write(benchmark::State& state, Format format) {
    const programme_guide guide = read();
    std::size_t bytes = 0;
    for ([[maybe_unused]] auto turn : state)
        bytes = format(guide);
    state.counters["bytes"] = static_cast<double>(bytes);
    programmes_per_second(state);
}
BENCHMARK_CAPTURE(guide_write, xmltv, [](const programme_guide& of) {
    return dabspi::xmltv_of(of).size();
})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(guide_write, json, [](const programme_guide& of) {
    return dabspi::guide_json(of).size();
})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(guide_write, documents, [](const programme_guide& of) {
    std::vector<std::string> said;
    return dabspi::spi_documents(of, said).size();
})->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();

// What the library takes of a receiver: memory of an idle server and of one that has received an ensemble,
// the stacks of its threads, the time to start and stop. Prints a table in Markdown.
//
// Stacks are given to the threads painted, so that the deepest byte ever written shows. The heap is counted
// in operator new, as the C library rounds it.
#include <pthread.h>
#include <sys/mman.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "src/event/quiet.h"
#include "src/server/spi_server.h"
#include "testkit/bodies.h"
#include "testkit/counted_heap.h"
#include "testkit/ensemble/calendar.h"
#include "testkit/ensemble/ensemble.h"
#include "testkit/temporary_directory.h"

extern "C" int __real_pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                                     void* (*start)(void*), void* argument);

namespace {

constexpr std::size_t kStack = 256 * 1024;
constexpr unsigned char kPaint = 0xA5;

// In the order in which a server makes its threads.
constexpr std::array<const char*, 6> kWorkers = {"server", "router",     "notifier",
                                                 "parser", "logo store", "database"};

std::array<unsigned char*, kWorkers.size()> stacks{};
std::atomic<std::size_t> threads_made{0};
bool painting = false;

std::size_t used(const unsigned char* stack) {
    const unsigned char* const end = stack + kStack;
    return static_cast<std::size_t>(
        end - std::find_if(stack, end, [](unsigned char byte) { return byte != kPaint; }));
}

// A field of /proc/self/status in kB.
long status_kb(const std::string& field) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.compare(0, field.size(), field) == 0) return std::atol(line.c_str() + field.size());
    return -1;
}

class counting_listener final : public spi::ISpiListener {
 public:
    void ProgramInfoReceived(const spi::ServElemId&, spi::SpiProgramInfo&) override { ++programmes; }
    void ProgramNowNextUpdated(spi::SpiProgramInfo&, spi::SpiProgramInfo&) override { ++now_next; }
    void StationLogoReceived(spi::SpiLogoInfo&) override { ++logos; }
    unsigned programmes = 0;
    unsigned now_next = 0;
    unsigned logos = 0;
};

using server_pointer = std::unique_ptr<spi::SpiServer>;

server_pointer make(const std::shared_ptr<spi::ISpiListener>& listener, const std::string& logo_root) {
    return std::make_unique<spi::SpiServer>(listener, "/temp/dab", logo_root);
}

void be_quiet() {
    if (spi::wait_until_quiet(std::chrono::minutes(1))) return;
    std::fputs("footprint: the library did not come to rest\n", stderr);
    std::exit(1);
}

// Two rounds of the carousel in the morning, then the clock for two hours.
void receive(spi::SpiServer& server, const soak::ensemble& ensemble, long day,
             const std::vector<soak::carousel_object>& objects) {
    constexpr int kMorning = 8 * 60;
    spi::MotDateTime now = soak::date_time_of(day, kMorning);
    server.SetDateTime(now);
    spi::ServElemId service = ensemble.stations.front().id;
    server.SetCurrentService(service, ensemble.eid);
    be_quiet();
    for (int round = 0; round < 2; ++round) {
        for (const soak::carousel_object& each : objects) {
            server.FeedMotBody({7, each.content_type, each.content_subtype, each.name},
                               body_of(each.at(0).bytes), each.data_service);
            be_quiet();  // the peak is that of one object, as at the rate of the air
        }
    }
    for (int minute = 0; minute < 120; ++minute) {
        now = soak::date_time_of(day, kMorning + minute);
        server.SetDateTime(now);
        be_quiet();
    }
}

double median_milliseconds(std::vector<double> of) {
    std::nth_element(of.begin(), of.begin() + static_cast<std::ptrdiff_t>(of.size() / 2), of.end());
    return of[of.size() / 2];
}

}  // namespace

extern "C" int __wrap_pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                                     void* (*start)(void*), void* argument) {
    const std::size_t number = threads_made++;
    if (!painting || number >= stacks.size())
        return __real_pthread_create(thread, attributes, start, argument);
    void* const stack =
        mmap(nullptr, kStack, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_STACK, -1, 0);
    if (stack == MAP_FAILED) return ENOMEM;
    std::memset(stack, kPaint, kStack);
    stacks[number] = static_cast<unsigned char*>(stack);
    pthread_attr_t own;
    pthread_attr_init(&own);
    pthread_attr_setstack(&own, stack, kStack);
    const int failed = __real_pthread_create(thread, &own, start, argument);
    pthread_attr_destroy(&own);
    return failed;
}

int main(int argc, char** argv) {
    // Times and resident memory of an emulated machine are those of the emulator.
    const bool emulated = argc > 1 && std::strcmp(argv[1], "--emulated") == 0;
    const temporary_directory logos;
    const std::string logo_root = logos.path().string();
    const auto listener = std::make_shared<counting_listener>();

    const long resident_before = status_kb("VmRSS:");
    counted_heap idle_heap;
    server_pointer server = make(listener, logo_root);
    be_quiet();
    const std::uint64_t idle_bytes = idle_heap.live();
    const long resident_idle = status_kb("VmRSS:");
    server.reset();

    std::vector<double> starts;
    std::vector<double> stops;
    for (int round = 0; round < 301; ++round) {
        const auto begin = std::chrono::steady_clock::now();
        server = make(listener, logo_root);
        const auto made = std::chrono::steady_clock::now();
        be_quiet();
        const auto quiet = std::chrono::steady_clock::now();
        server.reset();
        const auto gone = std::chrono::steady_clock::now();
        starts.push_back(std::chrono::duration<double, std::milli>(made - begin).count());
        stops.push_back(std::chrono::duration<double, std::milli>(gone - quiet).count());
    }

    const soak::ensemble home = soak::home_ensemble();
    const long day = spi_builder::mjd(2026, 3, 10);
    std::vector<soak::carousel_object> objects;
    soak::add_schedules(objects, home, day);
    soak::add_descriptions(objects, home, day);
    std::uint64_t bytes = 0;
    for (const soak::carousel_object& each : objects)
        bytes += each.at(0).bytes.size();

    const long resident_before_ensemble = status_kb("VmRSS:");
    counted_heap heap;
    server = make(listener, logo_root);
    receive(*server, home, day, objects);
    const std::uint64_t ensemble_bytes = heap.live();
    const std::uint64_t ensemble_peak = heap.peak();
    const long resident_ensemble = status_kb("VmRSS:");
    server.reset();
    const counting_listener received = *listener;
    if (received.programmes == 0 || received.logos == 0 || received.now_next == 0) {
        std::fputs("footprint: the ensemble was not received\n", stderr);
        return 1;
    }

    threads_made = 0;
    painting = true;
    server = make(listener, logo_root);
    receive(*server, home, day, objects);
    server.reset();

    utsname machine{};
    uname(&machine);
    std::printf("| %s, pointers of %zu bits | |\n|---|---|\n", machine.machine, 8 * sizeof(void*));
    std::printf("| heap of an idle server | %llu bytes |\n", static_cast<unsigned long long>(idle_bytes));
    std::printf(
        "| heap with the ensemble: %zu objects of %llu bytes, %zu services, %u programmes, %u logos written "
        "| %llu bytes |\n",
        objects.size(), static_cast<unsigned long long>(bytes), home.stations.size(), received.programmes,
        received.logos, static_cast<unsigned long long>(ensemble_bytes));
    std::printf("| the same at its highest | %llu bytes |\n", static_cast<unsigned long long>(ensemble_peak));
    for (std::size_t i = 0; i < kWorkers.size(); ++i)
        std::printf("| stack of the %s | %zu bytes |\n", kWorkers[i], used(stacks[i]));
    if (!emulated) {
        std::printf("| resident memory that an idle server adds to the process | %ld kB |\n",
                    resident_idle - resident_before);
        std::printf("| resident memory that a server with the ensemble adds | %ld kB |\n",
                    resident_ensemble - resident_before_ensemble);
        std::printf("| start: construction, median of %zu | %.3f ms |\n", starts.size(),
                    median_milliseconds(starts));
        std::printf("| stop: destruction, median of %zu | %.3f ms |\n", stops.size(),
                    median_milliseconds(stops));
    }
    return 0;
}

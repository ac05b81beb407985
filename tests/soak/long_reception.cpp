#include "tests/soak/long_reception.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "src/event/quiet.h"
#include "testkit/ensemble/calendar.h"
#include "tests/wrap/process_state.h"

namespace soak {
namespace {

// What a period may add to the live heap: the last payload may still be on its way back to the allocator
// when the library is quiet, the model keeps a bit for each retired day, and the titles of now and next, for
// which the host's choice of service is another one, differ in length.
constexpr std::int64_t kHeapMargin = 4 * 1024;
constexpr std::size_t kThreads = 6;

void print_progress(int day, int days, const soak_run& run, double seconds) {
    const process_use use = process_now();
    std::printf("day %4d of %d  %s  %11llu objects  %8llu notifications  RSS %6zu KiB  %7.1f s\n", day, days,
                date_time_of(run.next_day() - 1, 0).date().c_str(),
                static_cast<unsigned long long>(run.done().objects),
                static_cast<unsigned long long>(run.done().notifications), use.resident_kib, seconds);
    std::fflush(stdout);
}

}  // namespace

long_reception_result play(const std::function<std::unique_ptr<receiver>()>& make,
                           const std::string& logo_root, int days, long end, habits h) {
    const int threads = running_threads();
    make().reset();  // what a process does once for all servers is done
    EXPECT_TRUE(wait_for_threads(threads));
    const process_use before = process_now();
    const heap_use heap_before = live_heap();
    const auto began = std::chrono::steady_clock::now();
    const auto elapsed = [began] {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - began).count();
    };
    const bool progress = std::getenv("DABSPI_SOAK_PROGRESS") != nullptr;

    long_reception_result result;
    result.samples.reserve(static_cast<std::size_t>(days / kPeriod + 1));
    const heap_use heap_of_result = live_heap();
    {
        std::unique_ptr<receiver> tested = make();
        const process_use serving = process_now();
        EXPECT_EQ(serving.threads, before.threads + kThreads);
        EXPECT_EQ(serving.descriptors, before.descriptors);
        soak_run run(*tested, logo_root, end - days, h);
        for (int day = 1; day <= days && run.play_day(); ++day) {
            const process_use now = process_now();
            EXPECT_EQ(now.threads, serving.threads) << "day " << day;
            EXPECT_EQ(now.descriptors, serving.descriptors) << "day " << day;
            if (day % kPeriod == 0) result.samples.push_back({day, now, live_heap()});
            if (progress && (day % kPeriod == 0 || day == days)) print_progress(day, days, run, elapsed());
        }
        result.figures = run.done();
        result.model = run.model().seen;
        result.database = run.model().seen_by_database();
        result.carousel_objects = run.carousel_size();
        result.carousel_bytes = run.carousel_bytes();
        result.logo_files = run.model().files().size();
        result.listener_threads = tested->received.threads();
        const heap_use together = live_heap();
        tested.reset();
        result.of_library = {together.bytes - live_heap().bytes, together.blocks - live_heap().blocks};
    }
    result.seconds = elapsed();
    // Everything has been given back, but for what the result itself holds. Looked at first: the text of a
    // failure is on the heap.
    const std::int64_t kept = live_heap().bytes - heap_before.bytes;
    EXPECT_EQ(kept, heap_of_result.bytes - heap_before.bytes);
    EXPECT_TRUE(wait_for_threads(threads));
    const process_use after = process_now();
    EXPECT_EQ(after.threads, before.threads);
    EXPECT_EQ(after.descriptors, before.descriptors);
    return result;
}

void expect_nothing_grew(const long_reception_result& result) {
    ASSERT_EQ(result.samples.size(), result.figures.days / kPeriod);
    if (result.samples.empty()) return;  // fewer than ten days: there is nothing to compare
    const sample& first = result.samples.front();
    for (const sample& later : result.samples) {
        EXPECT_LE(std::abs(later.heap.bytes - first.heap.bytes), kHeapMargin)
            << "live heap at the end of day " << later.day << ": " << later.heap.bytes << " bytes, day "
            << first.day << ": " << first.heap.bytes;
    }
    constexpr int kLongRun = 100;  // days: over fewer the allocator has not settled
    const sample& last = result.samples.back();
    if (kSanitized || last.day < kLongRun) return;
    EXPECT_LE(last.process.resident_kib * 10, first.process.resident_kib * 11)
        << "resident memory at the end of day " << last.day;
}

void print_table(const long_reception_result& r) {
    const auto row = [](const char* what, unsigned long long value) {
        std::printf("%-46s %14llu\n", what, value);
    };
    std::printf("\n");
    row("days", r.figures.days);
    row("minutes on air", r.figures.minutes);
    row("objects in the carousel", r.carousel_objects);
    row("bytes of one round of the carousel", r.carousel_bytes);
    row("objects fed", r.figures.objects);
    row("bytes fed", r.figures.bytes);
    row("host calls", r.figures.calls);
    row("SPI objects that were read", r.model.read);
    row("SPI objects that were repeats", r.model.repeated);
    row("changed objects of equal size (not noticed)", r.model.same_size);
    row("changes of ensemble", r.model.ensembles);
    row("programmes stored", static_cast<unsigned long long>(r.database.stored));
    row("now/next updates", static_cast<unsigned long long>(r.database.updates));
    row("logos written and reported", r.model.images_written);
    row("logo files at the end", r.logo_files);
    row("contents of logo files compared", r.figures.files_compared);
    row("notifications compared", r.figures.notifications);
    row("waits for the library", r.figures.waits);
    row("live heap of the library at the end, bytes", static_cast<unsigned long long>(r.of_library.bytes));
    row("its blocks", static_cast<unsigned long long>(r.of_library.blocks));
    std::printf("%-46s %14.1f\n\n", "seconds", r.seconds);
    std::printf("  day   RSS KiB   allocator KiB   live heap bytes   blocks   descriptors   threads\n");
    for (const sample& s : r.samples) {
        const bool shown = s.day == r.samples.front().day || s.day == r.samples.back().day || s.day % 50 == 0;
        if (!shown) continue;
        std::printf("%5d %9zu %15zu %17lld %8lld %13zu %9zu\n", s.day, s.process.resident_kib,
                    s.process.allocator_kib, static_cast<long long>(s.heap.bytes),
                    static_cast<long long>(s.heap.blocks), s.process.descriptors, s.process.threads);
    }
    std::printf("\n");
    std::fflush(stdout);
}

}  // namespace soak

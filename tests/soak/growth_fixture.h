// What grows by design, in bytes of live heap for each byte on air, and what gives it back: a server, a
// listener that can be held in its call, and what is on air.
//
// Each attack is fed at a scale that is quick to measure; DABSPI_GROWTH_SCALE multiplies it.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

#include "src/server/spi_server.h"
#include "testkit/bodies.h"
#include "testkit/counted_heap.h"
#include "testkit/ensemble/calendar.h"
#include "testkit/temporary_directory.h"
#include "tests/server/queue_marker.h"
#include "tests/soak/attacks.h"
#include "tests/soak/gauges.h"
#include "tests/soak/growth_table.h"

namespace soak {

// What may stay after everything was given back: a payload that is on its way to the allocator while the
// library is quiet already. Measured 0 to 56 bytes; there is room for one such on each of the six threads.
constexpr std::int64_t kStays = 512;
constexpr auto kPatience = std::chrono::minutes(2);

// Lets calls pass, or holds the first one until it is opened.
class gate_listener final : public spi::ISpiListener {
 public:
    void ProgramInfoReceived(const spi::ServElemId&, spi::SpiProgramInfo&) override { pass(); }
    void ProgramNowNextUpdated(spi::SpiProgramInfo&, spi::SpiProgramInfo&) override { pass(); }
    void StationLogoReceived(spi::SpiLogoInfo&) override { pass(); }

    void close() {
        const std::lock_guard<std::mutex> lock(mutex_);
        open_ = false;
    }
    void open() {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            open_ = true;
        }
        changed_.notify_all();
    }
    void wait_for_a_call() {
        std::unique_lock<std::mutex> lock(mutex_);
        changed_.wait(lock, [this] { return calls_ > 0; });
    }
    std::uint64_t calls() {
        const std::lock_guard<std::mutex> lock(mutex_);
        return calls_;
    }

 private:
    void pass() {
        std::unique_lock<std::mutex> lock(mutex_);
        ++calls_;
        changed_.notify_all();
        changed_.wait(lock, [this] { return open_; });
    }
    std::mutex mutex_;
    std::condition_variable changed_;
    bool open_ = true;         // guarded by mutex_
    std::uint64_t calls_ = 0;  // guarded by mutex_
};

class Growth : public ::testing::Test {
 protected:
    Growth() {
        set_date(today);
        tune(kHostileEnsemble);
        settle();
        base = live_heap().bytes;
    }
    ~Growth() override { listener->open(); }

    void settle() { ASSERT_TRUE(spi::wait_until_quiet(kPatience)); }
    void set_date(std::uint32_t day) {
        spi::MotDateTime t = date_time_of(day, 600);
        server->SetDateTime(t);
    }
    void tune(std::uint16_t ensemble) {
        spi::ServElemId service{0xC221, 0xE1, 0};
        server->SetCurrentService(service, ensemble);
    }
    void change_ensemble() {
        tune(kHostileEnsemble + 1);
        tune(kHostileEnsemble);
        settle();
    }
    void feed(const hostile_object& object) {
        air += on_air(object);
        server->FeedMotBody({7, object.content_type, object.content_subtype, object.name},
                            body_of(object.bytes), data_service);
    }
    // `count` objects, times the scale, one after the other: what is in flight is not what is kept. How many
    // it were.
    unsigned feed_many(unsigned count, const std::function<hostile_object(unsigned)>& make) {
        const unsigned all = kSanitized ? 2 : count * static_cast<unsigned>(scale);
        for (unsigned i = 0; i < all; ++i) {
            feed(make(i));
            settle();
        }
        return all;
    }
    std::int64_t held() const { return live_heap().bytes - base; }
    // The listener is in its first call, and everything else has come to the queue behind it.
    std::int64_t held_behind_the_gate() {
        listener->wait_for_a_call();
        wait_until_only_the_notifier_is_busy(*server);
        return held();
    }
    void note(const char* attack, std::int64_t memory, const char* given_back_by) const {
        if (!kSanitized) add_to_growth_table({attack, given_back_by, air, memory});
    }
    void expect_given_back(std::int64_t but_for = 0) const { EXPECT_LE(held(), kStays + but_for); }

    const int scale = from_environment("DABSPI_GROWTH_SCALE", 1);
    const std::uint32_t today = spi_builder::mjd(2028, 3, 1);
    const spi::ServElemId data_service{0xE1C00221, 0xE1, 0};
    temporary_directory logos;
    std::shared_ptr<gate_listener> listener = std::make_shared<gate_listener>();
    std::unique_ptr<spi::SpiServer> server =
        std::make_unique<spi::SpiServer>(listener, "/temp/dab", logos.path().string());
    std::int64_t base = 0;
    std::uint64_t air = 0;
};

}  // namespace soak

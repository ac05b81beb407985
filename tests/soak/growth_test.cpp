// What grows by design, in bytes of live heap for each byte on air, and what gives it back.
//
// Each attack is fed at a scale that is quick to measure; the table at the end extrapolates linearly to an
// hour of air time. DABSPI_GROWTH_SCALE multiplies the scale.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <condition_variable>
#include <cstdio>
#include <functional>
#include <memory>
#include <mutex>

#include "src/server/spi_server.h"
#include "tests/soak/attacks.h"
#include "tests/soak/calendar.h"
#include "tests/soak/gauges.h"
#include "tests/support/bodies.h"
#include "tests/support/spi_builder_objects.h"
#include "tests/support/temporary_directory.h"

namespace soak {
namespace {

// What may stay after everything was given back: arrays of hash tables, which keep the length that they once
// had, and the last payload on its way.
constexpr std::int64_t kStays = 64 * 1024;
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

struct measured {
    std::string attack;
    double ratio;  // bytes of memory for a byte on air
    std::string given_back_by;
    std::uint64_t air;
    std::int64_t memory;
};

class table_of_growth final : public ::testing::Environment {
 public:
    static std::vector<measured>& rows() {
        static std::vector<measured> instance;
        return instance;
    }
    void TearDown() override {
        if (rows().empty()) return;
        std::printf("\nA linear extrapolation from the amounts in the last two columns; MB is 10^6 bytes.\n");
        std::printf("%-58s %10s | %-35s | %15s | %-28s | %12s %13s\n", "", "memory per",
                    "MB of memory in an hour, at kbit/s", "64 MB, 16 kb/s", "", "fed here", "held here");
        std::printf("%-58s %10s | %8s %8s %8s %8s | %15s | %-28s | %12s %13s\n", "attack", "air byte", "16",
                    "64", "128", "1100", "after", "given back by", "bytes", "bytes");
        for (const measured& m : rows()) {
            const auto hour = [&m](double kbit) { return m.ratio * kbit * 1000 / 8 * 3600 / 1e6; };
            std::printf("%-58s %10.2f | %8.0f %8.0f %8.0f %8.0f | %13.0f s | %-28s | %12llu %13lld\n",
                        m.attack.c_str(), m.ratio, hour(16), hour(64), hour(128), hour(1100),
                        64e6 / (m.ratio * 2000), m.given_back_by.c_str(),
                        static_cast<unsigned long long>(m.air), static_cast<long long>(m.memory));
        }
        std::printf("\n");
    }
};
const ::testing::Environment* const table = ::testing::AddGlobalTestEnvironment(new table_of_growth);

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
    // `count` objects, one after the other: what is in flight is not what is kept.
    void feed_many(unsigned count, const std::function<hostile_object(unsigned)>& make) {
        const unsigned all = kSanitized ? 2 : count * static_cast<unsigned>(scale);
        for (unsigned i = 0; i < all; ++i) {
            feed(make(i));
            settle();
        }
    }
    std::int64_t held() const { return live_heap().bytes - base; }
    // Behind a listener that does not return nothing is ever quiet, and nobody tells when the other workers
    // are done: for the figure, a second without any change is taken for it.
    std::int64_t held_behind_the_gate() const {
        listener->wait_for_a_call();
        int same = 0;
        std::int64_t last = held();
        while (same < 5 && !spi::wait_until_quiet(std::chrono::milliseconds(200))) {
            const std::int64_t now = held();
            same = now == last ? same + 1 : 0;
            last = now;
        }
        return last;
    }
    void note(const std::string& attack, std::int64_t memory, const std::string& given_back_by) {
        if (kSanitized) return;
        table_of_growth::rows().push_back(
            {attack, static_cast<double>(memory) / static_cast<double>(air), given_back_by, air, memory});
    }
    void expect_given_back() const { EXPECT_LE(held(), kStays); }

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

TEST_F(Growth, OfProgrammesBehindABlockedListenerEndsWithItsReturn) {
    listener->close();
    const unsigned services = kSanitized ? 1 : 10 * static_cast<unsigned>(scale);
    for (unsigned i = 0; i < services; ++i)
        feed(full_service(i, today));
    const std::int64_t blocked = held_behind_the_gate();
    EXPECT_EQ(listener->calls(), 1U);
    listener->open();
    settle();
    EXPECT_EQ(listener->calls(), services * 2880);
    // What is stored stays: only the queue counts here.
    note("(a) queue behind a blocked listener: stored programmes", blocked - held(), "the listener's return");
    change_ensemble();
    expect_given_back();
}

TEST_F(Growth, OfSharedProgrammesBehindABlockedListenerEndsWithItsReturn) {
    listener->close();
    const unsigned objects = kSanitized ? 1 : 40 * static_cast<unsigned>(scale);
    for (unsigned i = 0; i < objects; ++i)
        feed(shared_schedule(i, today));
    const std::int64_t blocked = held_behind_the_gate();
    listener->open();
    settle();
    note("(a) queue behind a blocked listener: shared schedules", blocked - held(), "the listener's return");
    change_ensemble();
    expect_given_back();
}

TEST_F(Growth, OfLogosBehindABlockedListenerEndsWithItsReturn) {
    const unsigned rounds = static_cast<unsigned>(scale);  // each takes 500 writes
    for (unsigned i = 0; i < rounds; ++i)
        feed(one_logo_announced_often(i));
    settle();
    const std::int64_t announced = held();
    listener->close();
    feed(image_of_the_one_logo());
    const std::int64_t blocked = held_behind_the_gate();
    EXPECT_EQ(listener->calls(), 1U);
    listener->open();
    settle();
    EXPECT_EQ(listener->calls(), rounds * 500);
    note("(a) queue behind a blocked listener: written logos", blocked - held(), "the listener's return");
    EXPECT_GT(announced, held());  // the image has used them up
    change_ensemble();
    expect_given_back();
}

TEST_F(Growth, OfNamelessAnnouncementsEndsWithTheEnsemble) {
    feed_many(20, nameless_logos);
    note("(b) announcements never matched: without names", held(), "change of ensemble");
    set_date(today + 1);
    settle();
    EXPECT_GT(held(), kStays) << "a new day forgets no announcements";
    change_ensemble();
    expect_given_back();
}

TEST_F(Growth, OfNamedAnnouncementsEndsWithTheEnsemble) {
    feed_many(20, named_logos);
    note("(b) announcements never matched: names of 4 bytes", held(), "change of ensemble");
    change_ensemble();
    expect_given_back();
}

TEST_F(Growth, OfOverlappingAnnouncementsEndsWithTheEnsemble) {
    feed_many(3, shared_logo_names);
    note("(b)+(e) announcements, overlapping names of tokens", held(), "change of ensemble");
    change_ensemble();
    expect_given_back();
}

TEST_F(Growth, OfRememberedObjectsEndsWithTheDay) {
    for (unsigned i = 0; i < (kSanitized ? 1000 : 100000 * static_cast<unsigned>(scale)); ++i)
        feed(empty_object(i));
    settle();
    note("(c) table of objects that were read: empty objects", held(), "new day, change of ensemble");
    EXPECT_GT(held(), kSanitized ? 0 : kStays);
    set_date(today + 1);
    settle();
    expect_given_back();
}

TEST_F(Growth, OfServicesWithFullDaysEndsWithTheEnsemble) {
    feed_many(20, [this](unsigned i) { return full_service(i, today); });
    note("(d) services with two days of one-minute programmes", held(), "two days, change of ensemble");
    change_ensemble();
    expect_given_back();
}

TEST_F(Growth, OfServicesWithFullDaysEndsAfterTwoDays) {
    feed_many(4, [this](unsigned i) { return full_service(i, today); });
    const std::int64_t two_days = held();
    set_date(today + 1);
    settle();
    EXPECT_NEAR(static_cast<double>(held()), static_cast<double>(two_days) / 2,
                0.1 * static_cast<double>(two_days));
    set_date(today + 2);
    settle();
    expect_given_back();  // but for the services themselves
}

TEST_F(Growth, OfServicesThatShareProgrammesEndsWithTheEnsemble) {
    feed_many(100, [this](unsigned i) { return shared_schedule(i, today); });
    EXPECT_EQ(listener->calls(), (kSanitized ? 2U : 100U * static_cast<unsigned>(scale)) * 30 * 34);
    note("(d) services, one schedule read again for each", held(), "two days, change of ensemble");
    change_ensemble();
    expect_given_back();
}

TEST_F(Growth, OfNamesOfTokensEndsWithTheEnsemble) {
    feed_many(8, [this](unsigned i) { return long_name(i, today, 16000); });
    note("(e) a name of tokens, one byte for 255", held(), "two days, change of ensemble");
    change_ensemble();
    expect_given_back();
}

TEST_F(Growth, OfOverlappingNamesOfTokensEndsWithTheEnsemble) {
    feed_many(3, [this](unsigned i) { return shared_long_names(i, today); });
    note("(e) overlapping names of tokens", held(), "two days, change of ensemble");
    change_ensemble();
    expect_given_back();
}

// The days of a service go, its entry stays.
TEST_F(Growth, OfServicesWhoseDaysAreGoneEndsWithTheEnsemble) {
    feed_many(20, [this](unsigned i) { return many_services(i, today); });
    set_date(today + 1);
    set_date(today + 2);
    settle();
    note("(d) entries of services whose days are over", held(), "change of ensemble");
    EXPECT_GT(held(), kSanitized ? 0 : kStays);
    change_ensemble();
    expect_given_back();
}

// Each change of date retires one day of a service: a date that jumps by two leaves one behind.
TEST_F(Growth, OfADateThatJumpsEndsWithTheEnsemble) {
    const std::uint32_t jumps = kSanitized ? 2 : 10 * static_cast<std::uint32_t>(scale);
    std::uint32_t date = today;
    for (std::uint32_t i = 0; i < jumps; ++i) {
        hostile_object object = full_service(0, date);
        object.name = "d" + std::to_string(i);
        feed(object);
        settle();
        date += 2;
        set_date(date);
    }
    settle();
    EXPECT_EQ(listener->calls(), jumps * 2880);
    note("(d) one service, the host's date jumps by two days", held(), "change of ensemble");
    EXPECT_GT(held(), jumps * 100 * 1000);
    change_ensemble();
    expect_given_back();
}

// What an ordinary ensemble leaves behind: logos that are announced each day and are nowhere on air. An
// announcement of the usual kind has a name of some forty characters.
TEST_F(Growth, OfAnOrdinaryDayIsWhatIsAnnouncedAndNeverComes) {
    spi_builder::service_data service;
    for (int i = 0; i < 12; ++i)
        service.logos.push_back({"image/png",
                                 "http://logos.example/station/" + std::to_string(1000 + i) + "/128.png",
                                 {},
                                 128,
                                 128});
    const hostile_object object{"si.EHB", 7, 0, spi_builder::si_object(0xE1, kHostileEnsemble, {service})};
    feed(object);
    settle();
    const std::int64_t first = held();
    constexpr int kDays = 400;
    for (std::uint32_t day = 1; day <= kDays; ++day) {
        set_date(today + day);
        feed(object);
    }
    settle();
    const std::int64_t all = held();
    if (!kSanitized) {
        std::printf(
            "Twelve logos that are announced every day and never come: %lld bytes after a day, %lld after "
            "%d days, %.0f a day\n",
            static_cast<long long>(first), static_cast<long long>(all), kDays + 1,
            static_cast<double>(all - first) / kDays);
    }
    EXPECT_GT(all, first);
    change_ensemble();
    expect_given_back();
}

}  // namespace
}  // namespace soak

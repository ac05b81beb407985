// The explanation against the library: for every line, what is explained as stored or written is what the
// library's listener was told.

#include "tools/check/receiver_model.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "tests/tools/check/broadcast.h"
#include "tools/playing/storage.h"

namespace {

using namespace check_test;
using namespace dabspi::check;

std::vector<std::string> disagreements_of(const dabspi::recording& calls) {
    const dabspi::storage store = dabspi::storage::temporary();
    const replay_result replayed = replay_recording(calls, store.path());
    return disagreements(make_history(calls, replayed), replayed);
}

TEST(ReceiverModel, AgreesWithTheLibraryOnEveryExample) {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(DABSPI_RECORDINGS)) {
        if (entry.path().extension() != ".jsonl") continue;
        const dabspi::recording calls = dabspi::read_recording(entry.path().string());
        ASSERT_TRUE(calls.errors.empty()) << entry.path();
        EXPECT_EQ(disagreements_of(calls), std::vector<std::string>{}) << entry.path();
        ++count;
    }
    EXPECT_GE(count, 20U);
}

// Days that jump, ensembles that change, objects that change with and without their size, broken objects,
// images for several announcements at once.
class random_broadcast {
 public:
    explicit random_broadcast(unsigned seed) : dice_(seed) {}

    broadcast make() {
        broadcast calls;
        for (int i = 0; i < 120; ++i)
            add(calls);
        return calls;
    }

 private:
    unsigned roll(unsigned sides) { return static_cast<unsigned>(dice_() % sides); }

    void add(broadcast& calls) {
        switch (roll(8)) {
            case 0: day_ += roll(3); [[fallthrough]];
            case 1: {
                char date[16];
                char time[8];
                std::snprintf(date, sizeof date, "202603%02u", 8 + day_ % 20);
                std::snprintf(time, sizeof time, "%02u%02u", roll(24), roll(60));
                calls.clock(date, time);
                break;
            }
            case 2:
                calls.listen(0xC220 + roll(3),
                             static_cast<std::uint16_t>(roll(9) == 0 ? 0 : kEnsemble + roll(2)));
                break;
            case 3: calls.si("si" + std::to_string(roll(3)), information()); break;
            case 4: calls.image(image_name(), image_body(), static_cast<std::uint16_t>(roll(5))); break;
            default:
                calls.feed(static_cast<std::uint8_t>(roll(12) == 0 ? 3 : 7),
                           static_cast<std::uint16_t>(roll(9) == 0 ? 2 : 1), "pi" + std::to_string(roll(4)),
                           schedule(), 0xE1C00098 + roll(2));
        }
    }

    std::string image_name() { return "image" + std::to_string(roll(3)); }
    bytes image_body() { return bytes(roll(6) == 0 ? 22529 : 10 + roll(3), 7); }

    bytes information() {
        spi_builder::service_data service = station_with({});
        service.bearers.front().sid = roll(8) == 0 ? 0x12345678 : 0xC220 + roll(3);
        for (unsigned i = roll(5); i != 0; --i)
            service.logos.push_back(roll(2) == 0 ? logo(image_name(), 128, 128)
                                                 : logo(image_name(), 320, 240));
        return spoilt(information_object(service));
    }

    bytes schedule() {
        spi_builder::schedule_data data;
        const auto ensemble = static_cast<std::uint16_t>(kEnsemble + roll(2));
        if (roll(3) != 0) data.scope = spi_builder::service_id{0xE1, ensemble, 0xC220 + roll(3), 0};
        for (unsigned i = roll(6); i != 0; --i) {
            auto one =
                programme(std::string(roll(3), 'x'), spi_builder::mjd(2026, 3, 8) + day_ % 20 + roll(4) - 1,
                          roll(24), 10 * roll(6), roll(300));
            one.start.offset_half_hours = static_cast<int>(roll(9)) - 4;
            if (data.scope == std::nullopt) one.bearers = {{0xE1, ensemble, 0xC220 + roll(3), 0}};
            data.programmes.push_back(one);
        }
        return spoilt(spi_builder::pi_object({data}));
    }

    bytes spoilt(bytes object) {
        if (roll(5) == 0 && !object.empty())
            object[roll(static_cast<unsigned>(object.size()))] ^= static_cast<std::uint8_t>(1U << roll(8));
        return roll(8) == 0 ? spi_builder::cut(object, roll(static_cast<unsigned>(object.size()))) : object;
    }

    std::mt19937 dice_;
    unsigned day_ = 0;
};

TEST(ReceiverModel, AgreesWithTheLibraryOnRandomBroadcasts) {
    std::size_t filed = 0;
    std::size_t written = 0;
    for (unsigned seed = 1; seed <= 40; ++seed) {
        const broadcast calls = random_broadcast(seed).make();
        ASSERT_EQ(disagreements_of(calls.calls()), std::vector<std::string>{}) << "seed " << seed;
        const check_report report = calls.check();
        for (const programme_arrival& each : report.past.programmes)
            filed += each.outcome == programme_arrival::filed ? 1 : 0;
        for (const image_arrival& each : report.past.images)
            for (const image_arrival::use& use : each.uses)
                written += use.how == image_arrival::written ? 1 : 0;
    }
    EXPECT_GT(filed, 200U);
    EXPECT_GT(written, 50U);
}

TEST(Disagreement, IsSeenWhereSomethingElseWasReported) {
    const dabspi::recording calls = clean().calls();
    const dabspi::storage store = dabspi::storage::temporary();
    replay_result replayed = replay_recording(calls, store.path());
    const history simulated = make_history(calls, replayed);
    ASSERT_TRUE(disagreements(simulated, replayed).empty());
    for (auto each = replayed.all.begin(); each != replayed.all.end(); ++each) {
        replay_result without = replayed;
        without.all.erase(without.all.begin() + (each - replayed.all.begin()));
        const bool reported_alone = std::holds_alternative<dabspi::now_next>(each->what);
        EXPECT_EQ(disagreements(simulated, without).size(), reported_alone ? 0U : 1U);
    }
}

}  // namespace

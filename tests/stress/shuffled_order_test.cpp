// What must be in order stays in order, whatever the timing of the threads.
#include <gtest/gtest.h>

#include <algorithm>
#include <thread>
#include <vector>

#include "tests/integration/noting_listener.h"
#include "tests/stress/shuffled_fixture.h"

namespace {

using namespace spi_builder;

constexpr int kProgrammes = 12;  // one an hour, from midnight

// "A03": station A, the programme that begins at 03:00.
std::string title(char station, int hour) {
    return {station, static_cast<char>('0' + hour / 10), static_cast<char>('0' + hour % 10)};
}

bytes schedule_of(char station, std::uint32_t sid) {
    schedule_data day{service_id{0xE1, broadcast::kEnsemble, sid, 0},
                      utc_time{mjd(2026, 3, 2), 0, 0},
                      utc_time{mjd(2026, 3, 3), 0, 0},
                      {}};
    for (int hour = 0; hour < kProgrammes; ++hour)
        day.programmes.push_back(
            {{"", title(station, hour), ""}, {mjd(2026, 3, 2), static_cast<unsigned>(hour), 0}, 3600});
    return pi_object({day});
}

struct ShuffledOrder : shuffled_rounds {
    broadcast sent;
    spi::ServElemId a{0xC221, 0xE1, 0};
    spi::ServElemId b{0xC222, 0xE1, 0};
    const bytes schedule_a = schedule_of('A', a.sid);
    const bytes schedule_b = schedule_of('B', b.sid);

    static void tick(spi::SpiServer& server, int hour, std::uint8_t minute = 1) {
        spi::MotDateTime now{2026, 3, 2, static_cast<std::uint8_t>(hour), minute};
        server.SetDateTime(now);
    }
};

// The programmes that the listener was told of, by station.
std::vector<std::string> programmes_of(char station, const std::vector<std::string>& texts) {
    const std::string sid = station == 'A' ? "programme 49697 " : "programme 49698 ";
    std::vector<std::string> titles;
    for (const std::string& text : texts) {
        if (text.compare(0, sid.size(), sid) == 0) titles.push_back(text.substr(sid.size(), 3));
    }
    return titles;
}

// The titles of now, in the order of the updates; empty where now was not set.
std::vector<std::string> nows(const std::vector<std::string>& texts) {
    std::vector<std::string> titles;
    for (const std::string& text : texts) {
        if (text.compare(0, 4, "now ") == 0) titles.push_back(text.substr(4, text.find(" next ") - 4));
    }
    return titles;
}

std::vector<std::string> all_of(char station) {
    std::vector<std::string> titles;
    for (int hour = 0; hour < kProgrammes; ++hour)
        titles.push_back(title(station, hour));
    return titles;
}

// The clock goes on while the schedule is parsed.
TEST_F(ShuffledOrder, OfProgrammesAndOfNowHoldsWhileTheClockTicks) {
    play(25, [this](unsigned) {
        const auto listener = std::make_shared<noting_listener>();
        spi::SpiServer server(listener, "/temp/dab", logos.path().string());
        tick(server, 0);
        server.SetCurrentService(a, broadcast::kEnsemble);
        sent.feed_object(server, 1, schedule_a, "a");
        for (int hour = 1; hour < 11; ++hour) {
            tick(server, hour);
            server.ResendNowNext();
        }
        ASSERT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1)));
        // While both now and next are set, however stale, a programme that is filed does not touch them:
        // where the clock overtook the parser, it is the next minute that brings them up to date.
        tick(server, 10, 2);
        server.ResendNowNext();
        ASSERT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1)));
        const std::vector<std::string> texts = listener->texts();

        EXPECT_EQ(programmes_of('A', texts), all_of('A'));  // each once, in the order of the object
        std::vector<std::string> received;
        std::string latest;
        std::size_t updates = 0;
        for (const std::string& text : texts) {
            if (text.compare(0, 4, "now ") != 0) {
                received.push_back(text.substr(16, 3));
                continue;
            }
            ++updates;
            const std::string now = nows({text})[0];
            if (now.empty()) continue;
            EXPECT_GE(now, latest);  // now never goes back
            EXPECT_NE(std::find(received.begin(), received.end(), now), received.end())
                << now << " never reported";
            latest = now;
        }
        EXPECT_GE(updates, 11U);  // each request is answered
        EXPECT_EQ(texts.back(), "now A10 next A11");
    });
}

// The host goes back and forth between two stations while their schedules are parsed.
TEST_F(ShuffledOrder, OfNowFollowsTheOrderOfTheServices) {
    play(25, [this](unsigned) {
        const auto listener = std::make_shared<noting_listener>();
        spi::SpiServer server(listener, "/temp/dab", logos.path().string());
        tick(server, 5);
        server.SetCurrentService(a, broadcast::kEnsemble);
        sent.feed_object(server, 1, schedule_a, "a");
        sent.feed_object(server, 1, schedule_b, "b");
        constexpr int kSwitches = 9;  // the last one to B
        for (int i = 0; i < kSwitches; ++i) {
            server.SetCurrentService(i % 2 == 0 ? b : a, broadcast::kEnsemble);
            server.ResendNowNext();
        }
        ASSERT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1)));
        const std::vector<std::string> texts = listener->texts();

        EXPECT_EQ(programmes_of('A', texts), all_of('A'));
        EXPECT_EQ(programmes_of('B', texts), all_of('B'));
        char station = 'A';
        int switches = 0;
        for (const std::string& now : nows(texts)) {
            if (now.empty()) continue;
            EXPECT_EQ(now.substr(1), "05");
            if (now[0] != station) ++switches;
            station = now[0];
        }
        EXPECT_EQ(station, 'B');
        EXPECT_LE(switches, kSwitches);
        EXPECT_EQ(switches % 2, 1);
        EXPECT_EQ(nows(texts).back(), "B05");
    });
}

// A broadcast reaches every worker, in its place among the calls: the ensemble changes while objects are
// parsed.
TEST_F(ShuffledOrder, OfAClearanceHoldsAmongTheCallsOfTheHost) {
    play(25, [this](unsigned) {
        const auto listener = std::make_shared<noting_listener>();
        spi::SpiServer server(listener, "/temp/dab", logos.path().string());
        tick(server, 5);
        server.SetCurrentService(a, broadcast::kEnsemble);
        sent.feed_object(server, 1, schedule_a, "a");
        server.SetCurrentService(a, 0x1001);  // forgets, and accepts no identifier of the objects'
        server.SetCurrentService(b, broadcast::kEnsemble);  // forgets once more
        sent.feed_object(server, 1, schedule_b, "b");
        sent.feed_object(server, 1, schedule_b, "b");  // parsed once only
        ASSERT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1)));
        const std::vector<std::string> texts = listener->texts();
        EXPECT_EQ(programmes_of('B', texts), all_of('B'));
        // Filed before the first clearance, or after one of them; once at most, since the object came once.
        const std::vector<std::string> of_a = programmes_of('A', texts);
        EXPECT_EQ(of_a, all_of('A'));
        EXPECT_EQ(nows(texts).back(), "B05");
    });
}

TEST_F(ShuffledOrder, OfQuietAfterEverythingHoldsForEveryWaiter) {
    play(25, [this](unsigned) {
        const auto listener = std::make_shared<noting_listener>();
        spi::SpiServer server(listener, "/temp/dab", logos.path().string());
        tick(server, 5);
        server.SetCurrentService(a, broadcast::kEnsemble);
        sent.feed_object(server, 1, schedule_a, "a");
        std::vector<std::thread> waiters;
        for (int i = 0; i < 4; ++i)
            waiters.emplace_back([&] {
                EXPECT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1)));
                const std::vector<std::string> texts = listener->texts();
                EXPECT_EQ(programmes_of('A', texts), all_of('A'));
                EXPECT_EQ(nows(texts).back(), "A05");
            });
        for (std::thread& waiter : waiters)
            waiter.join();
    });
}

}  // namespace

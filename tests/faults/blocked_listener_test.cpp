// A listener that does not return while its host goes on: nothing is lost, nothing is told out of order, and
// the end of the server waits for it.
#include <atomic>
#include <thread>

#include "src/event/quiet.h"
#include "testkit/journal.h"
#include "tests/event/counted_payloads.h"
#include "tests/event/watchdog.h"
#include "tests/faults/reception_checks.h"
#include "tests/server/ending_server.h"
#include "tests/support/captured_debug.h"

namespace {

constexpr int kTurns = 200;

struct BlockedListener : testing::TestWithParam<surface> {
    const watchdog guard;
    const captured_debug debug;
    sandbox here;
    listener_notes notes;
    gate entered;
    gate may_return;
    std::unique_ptr<host> subject;
    std::vector<std::string> expected;

    void SetUp() override {
        here.notes_calls = false;
        const std::string root = here.at("/HdStationLogo");
        if (GetParam() == surface::kCore) std::filesystem::create_directories(root);
        subject = make_host(GetParam(), notes, root);
        subject->construct();
        subject->set_time(2, 10, 30);
        subject->tune(on_air::kStation, on_air::kEnsemble);
        subject->feed(7, 0, "si", on_air::description());
        subject->feed(7, 1, "today", on_air::today());
        const std::uint32_t day = spi_builder::mjd(2026, 3, 2);
        subject->feed(
            7, 1, "other",
            on_air::schedule(2, {{{"", "Other", ""}, {day, 10, 0}, 3600}}, on_air::kBlockedStation));
        ASSERT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1)));
        expected = notes.all();
        ASSERT_FALSE(expected.empty());
    }

    // Nothing but these notifications is left, and the listener is in the first of them.
    static bool become_all_that_is_left(long updates, long logos) {
        return counted_payloads::wait_until([=] {
            return counted_payloads::alive(spi::EC_NOWNEXT) == updates &&
                   counted_payloads::alive(spi::EC_LOGOCB) == logos &&
                   counted_payloads::alive() == updates + logos;
        });
    }

    // The listener stays in its next call, and all of this waits behind it.
    void block_and_go_on() {
        notes.during_a_call = [this](const char*) {
            entered.open();
            may_return.wait();
        };
        for (int turn = 0; turn < kTurns; ++turn) {
            const bool other = turn % 2 == 0;
            subject->tune(other ? on_air::kBlockedStation : on_air::kStation, on_air::kEnsemble);
            expected.push_back(other ? "now Other next " : "now Morning next Noon");
        }
        ASSERT_TRUE(become_all_that_is_left(kTurns, 0));
        entered.wait();
        subject->feed(2, 3, "small.png", on_air::png());
        subject->feed(2, 3, "large.png", on_air::png());
        expected.push_back("logo E1C2210_3.PNG size 3");
        expected.push_back("logo E1C2210_4.PNG size 4");
        ASSERT_TRUE(become_all_that_is_left(kTurns, 2));
        EXPECT_EQ(notes.count(), expected.size() - kTurns - 1);  // it is in the first of these calls
        EXPECT_FALSE(spi::wait_until_quiet(std::chrono::milliseconds(0)));
    }
};

TEST_P(BlockedListener, ReceivesEverythingInOrderOnceItReturns) {
    block_and_go_on();
    may_return.open();
    EXPECT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1)));
    EXPECT_EQ(notes.all(), expected);
    subject->destroy();
    EXPECT_EQ(notes.all(), expected);
}

TEST_P(BlockedListener, IsWaitedForByTheEndAndReceivesWhatWasQueuedBefore) {
    block_and_go_on();
    counted_payloads::forget();
    std::atomic<bool> ended{false};
    std::thread destroyer([&] {
        subject->destroy();
        ended = true;
    });
    EXPECT_TRUE(counted_payloads::wait_until(&one_worker_alone_has_not_answered));
    EXPECT_FALSE(ended);
    EXPECT_EQ(notes.count(), expected.size() - kTurns - 1);
    may_return.open();
    destroyer.join();
    EXPECT_EQ(notes.all(), expected);
    EXPECT_TRUE(spi::wait_until_quiet(std::chrono::milliseconds(0)));
}

INSTANTIATE_TEST_SUITE_P(Of, BlockedListener, testing::Values(surface::kCore, surface::kWrapper),
                         [](const auto& about) {
                             return std::string(about.param == surface::kCore ? "TheCore" : "TheWrapper");
                         });

}  // namespace

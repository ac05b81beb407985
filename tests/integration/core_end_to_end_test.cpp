// A schedule and a logo on their way from the host's call to the listener's.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <locale>

#include "testkit/temporary_directory.h"
#include "tests/event/log_lines.h"
#include "tests/event/watchdog.h"
#include "tests/integration/noting_listener.h"
#include "tests/server/fed_server.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct CoreEndToEnd : testing::Test {
    const watchdog guard;
    temporary_directory logos;
    broadcast sent;
    std::shared_ptr<noting_listener> listener = std::make_shared<noting_listener>();
    std::unique_ptr<spi::SpiServer> server =
        std::make_unique<spi::SpiServer>(listener, "/temp/dab", logos.path().string());

    // What the listener has received since the last call, once nothing is on its way any more.
    std::vector<std::string> received() {
        EXPECT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1)));
        std::vector<std::string> texts = listener->texts();
        listener->calls.take();
        return texts;
    }
    void set_time(unsigned hour, unsigned minute) {
        spi::MotDateTime now{2026, 3, 2, static_cast<std::uint8_t>(hour), static_cast<std::uint8_t>(minute)};
        server->SetDateTime(now);
    }
    std::string file(const std::string& name) const {
        std::ifstream in(logos / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
};

TEST_F(CoreEndToEnd, OfAScheduleEndsInNowAndNextAfterTheProgrammesThatCausedThem) {
    sent.tune(*server);
    sent.feed_pi(*server);
    EXPECT_THAT(received(), ElementsAre("programme 49697 Morning 10:00 60", "now Morning next ",
                                        "programme 49697 Noon 11:00 60", "now Morning next Noon"));
}

TEST_F(CoreEndToEnd, OfTheTimeMovesNowOnOneMinuteAfterItsEnd) {
    sent.tune(*server);
    sent.feed_pi(*server);
    received();
    set_time(11, 0);
    EXPECT_THAT(received(), IsEmpty());
    set_time(11, 1);
    EXPECT_THAT(received(), ElementsAre("now Noon next "));
}

TEST_F(CoreEndToEnd, OfARepeatedObjectEndsAtTheParser) {
    sent.tune(*server);
    sent.feed_pi(*server);
    received();
    sent.feed_pi(*server);
    EXPECT_THAT(received(), IsEmpty());
}

TEST_F(CoreEndToEnd, OfAnotherServiceReportsProgrammesButNoNowAndNext) {
    sent.tune(*server);
    spi::ServElemId other{0x1234, 0xE1, 0};
    server->SetCurrentService(other, broadcast::kEnsemble);
    sent.feed_pi(*server);
    EXPECT_THAT(received(), ElementsAre("programme 49697 Morning 10:00 60", "programme 49697 Noon 11:00 60"));
    server->SetCurrentService(sent.service, broadcast::kEnsemble);
    EXPECT_THAT(received(), ElementsAre("now Morning next Noon"));
}

TEST_F(CoreEndToEnd, OfAResentPairComesFromTheHostsRequest) {
    sent.tune(*server);
    sent.feed_pi(*server);
    received();
    server->ResendNowNext();
    EXPECT_THAT(received(), ElementsAre("now Morning next Noon"));
}

TEST_F(CoreEndToEnd, OfAnotherEnsembleForgetsEverything) {
    sent.tune(*server);
    sent.feed_pi(*server);
    sent.feed_si(*server);
    received();
    server->SetCurrentService(sent.service, 0x1002);
    sent.feed_logo(*server);
    server->ResendNowNext();
    EXPECT_THAT(received(), ElementsAre("now  next "));
    server->SetCurrentService(sent.service, broadcast::kEnsemble);
    sent.feed_pi(*server);  // parsed once more
    EXPECT_EQ(received().size(), 4U);
}

TEST_F(CoreEndToEnd, OfALogoEndsInAFileAndACall) {
    sent.tune(*server);
    sent.feed_si(*server);
    EXPECT_THAT(received(), IsEmpty());
    sent.feed_logo(*server);
    EXPECT_THAT(received(), ElementsAre("logo E1C2210_4.PNG"));
    EXPECT_EQ(file("E1C2210_4.PNG"), "\x89PNG");
}

TEST_F(CoreEndToEnd, OfALogoBeforeItsAnnouncementEndsInNothing) {
    sent.tune(*server);
    sent.feed_logo(*server);
    EXPECT_THAT(received(), IsEmpty());
    sent.feed_si(*server);
    EXPECT_THAT(received(), IsEmpty());
    EXPECT_TRUE(std::filesystem::is_empty(logos.path()));
}

struct grouping : std::numpunct<char> {
    char do_thousands_sep() const override { return ','; }
    std::string do_grouping() const override { return "\1"; }
};

TEST_F(CoreEndToEnd, IsUntouchedByAHostsGroupingLocale) {
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new grouping));
    const captured_stderr log;
    sent.tune(*server);
    sent.feed_si(*server);
    received();
    sent.feed_logo(*server);
    const auto logo = received();
    // Nobody has this identifier: the router logs it.
    server->send(std::make_shared<spi::i_evt_base>(spi::EC_ENS), spi::QID_MAX);
    ASSERT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1)));
    const std::string lines = log.text();
    std::locale::global(before);
    EXPECT_THAT(logo, ElementsAre("logo E1C2210_4.PNG"));
    EXPECT_TRUE(std::filesystem::exists(logos / "E1C2210_4.PNG"));
    EXPECT_THAT(messages_of(lines), ElementsAre(" Event backend - no queue  QID_MAX / EC_ENS"));
}

TEST_F(CoreEndToEnd, OfTwoServersDoNotMeet) {
    const auto other_listener = std::make_shared<noting_listener>();
    auto other = std::make_unique<spi::SpiServer>(other_listener, "/temp/dab", logos.path().string());
    sent.tune(*server);
    sent.feed_pi(*server);
    sent.tune(*other);
    EXPECT_EQ(received().size(), 4U);
    EXPECT_THAT(other_listener->texts(), IsEmpty());
    server.reset();
    sent.feed_pi(*other);
    EXPECT_THAT(received(), IsEmpty());
    EXPECT_EQ(other_listener->texts().size(), 4U);
}

}  // namespace

// Playing recordings through both interfaces, within the test's own process.

#include "tools/playing/player.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "src/event/payloads.h"
#include "tests/tools/files/files.h"
#include "tests/tools/recording/sample_broadcast.h"
#include "tools/recording/notification_json.h"

namespace {

using namespace sample_broadcast;
using dabspi::library_api;
using dabspi::notification;
using dabspi::notification_time;
using dabspi::play_end;
using dabspi::recording;
using testing::ElementsAreArray;

class Player : public testing::TestWithParam<library_api> {
 protected:
    Player() {
        settings_.api = GetParam();
        settings_.storage_path = std::filesystem::canonical(storage_.path()).string();
        hooks_.notify = [this](const notification& what, const notification_time& at) {
            received_.push_back(notification_json(what));
            times_.push_back(at);
            return true;
        };
    }

    play_end play(const std::vector<const char*>& calls) {
        const recording from = dabspi::read_recording(write_recording(files_, calls));
        EXPECT_TRUE(from.errors.empty()) << error_text(from, from.errors.front());
        return dabspi::play(from, settings_, hooks_);
    }

    static std::ptrdiff_t threads() {
        return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
    }

    bool core() const { return GetParam() == library_api::core; }

    temporary_directory files_;
    temporary_directory storage_;
    dabspi::player_settings settings_;
    dabspi::player_hooks hooks_;
    std::vector<std::string> received_;
    std::vector<notification_time> times_;
};

INSTANTIATE_TEST_SUITE_P(Interfaces, Player, testing::Values(library_api::wrapper, library_api::core),
                         [](const auto& chosen) {
                             return chosen.param == library_api::core ? "core" : "wrapper";
                         });

TEST_P(Player, PassesOnWhatTheListenerReceives) {
    EXPECT_EQ(play(whole()), play_end::finished);
    EXPECT_THAT(received_, ElementsAreArray(core() ? whole_received_by_core() : whole_received_by_wrapper()));
}

TEST_P(Player, LogosAreWrittenBelowTheStoragePath) {
    play(whole());
    EXPECT_EQ(read_file(storage_ / (std::string("HdStationLogo/") + kLogoFile)), kLogoBytes);
}

TEST_P(Player, FeedsAsFastAsTheCallsReturnWithoutWaiting) {
    settings_.wait_after_each_call = false;
    // All on one path, from the parser over the programme database to the listener: the order is sure.
    EXPECT_EQ(play({kClock, kService, kSchedule}), play_end::finished);
    EXPECT_THAT(received_, core() ? ElementsAreArray({kBreakfast, kFirstPair, kElevenses, kSecondPair})
                                  : ElementsAreArray({kFirstPair, kSecondPair}));
}

TEST_P(Player, TellsWhatTheHostHadSetWhenANotificationCame) {
    play({kClock, kService, kSchedule, R"({"call":"SetDateTime","date":"20260302","time":"1101"})"});
    ASSERT_FALSE(received_.empty());
    ASSERT_TRUE(times_.front().clock && times_.back().clock && times_.front().service);
    EXPECT_EQ(times_.front().clock->time(), "10:30");
    EXPECT_EQ(times_.back().clock->time(), "11:01");
    EXPECT_EQ(times_.front().service->sid, 0xC221u);
}

TEST_P(Player, NobodyCanTellTheMomentWithoutWaiting) {
    settings_.wait_after_each_call = false;
    play({kClock, kService, kSchedule});
    ASSERT_FALSE(times_.empty());
    for (const notification_time& at : times_)
        EXPECT_FALSE(at.clock || at.service);
}

TEST_P(Player, ADateOfAnotherLengthLeavesTheDayUnset) {
    // Without a date every programme is refused.
    play({R"({"call":"SetDateTime","date":"2026-03-02","time":"1030"})", kService, kSchedule});
    EXPECT_TRUE(received_.empty());
}

TEST_P(Player, EachClockStartsFromZero) {
    // A host would have kept the day of the first call if both calls had used one record.
    play({kClock, R"({"call":"SetDateTime","date":"","time":"1030"})", kService, kSchedule});
    EXPECT_TRUE(received_.empty());
}

TEST_P(Player, StopsWhenNobodyListensAnyMore) {
    std::size_t calls = 0;
    hooks_.notify = [](const notification&, const notification_time&) { return false; };
    hooks_.go_on = [&](std::size_t fed) {
        calls = fed;
        return true;
    };
    EXPECT_EQ(play(whole()), play_end::stopped);
    EXPECT_EQ(calls, 2u) << "the third call is the first to be notified of";
}

TEST_P(Player, StopsBetweenCalls) {
    hooks_.go_on = [](std::size_t fed) { return fed < 2; };
    EXPECT_EQ(play(whole()), play_end::stopped);
    EXPECT_TRUE(received_.empty());
}

TEST_P(Player, GivesUpALibraryThatDoesNotComeToRest) {
    // A payload that nobody releases is what a worker that hangs looks like.
    auto held = std::make_shared<spi::resend_nownext_event>();
    settings_.longest_wait = std::chrono::milliseconds(1);
    const auto threads_before = threads();
    EXPECT_EQ(play(whole()), play_end::not_quiet);
    EXPECT_GT(threads(), threads_before) << "the library is left as it is: ending it might never return";
}

TEST_P(Player, AWaitThatIsGivenUpByTheUserIsNoFailureOfTheLibrary) {
    auto held = std::make_shared<spi::resend_nownext_event>();
    hooks_.go_on = [](std::size_t) { return false; };
    settings_.longest_wait = std::chrono::hours(1);
    EXPECT_EQ(play(whole()), play_end::stopped);
}

TEST_P(Player, ALogoRootThatCannotBeMadeIsAnError) {
    write_file(storage_, "HdStationLogo", "a file is in the way");
    EXPECT_THROW(play(whole()), std::runtime_error);
    EXPECT_TRUE(received_.empty());
}

TEST_P(Player, RefusesARecordingWithErrors) {
    EXPECT_THROW(dabspi::play(dabspi::parse_recording("nonsense", "x", ""), settings_, hooks_),
                 std::invalid_argument);
}

TEST_P(Player, ResendNowNextExistsOnTheCoreInterfaceOnly) {
    recording from = dabspi::parse_recording(lines({kResend, "nonsense", kResend}), "day.jsonl", "");
    refuse_missing_calls(from, GetParam());
    std::vector<std::size_t> lines_with_errors;
    for (const dabspi::recording_error& error : from.errors)
        lines_with_errors.push_back(error.line);
    if (core()) {
        EXPECT_THAT(lines_with_errors, testing::ElementsAre(2));
    } else {
        EXPECT_THAT(lines_with_errors, testing::ElementsAre(1, 2, 3));
        EXPECT_EQ(error_text(from, from.errors.front()),
                  "day.jsonl:1: ResendNowNext exists on the core interface only; use --api core");
    }
}

class CorePlayer : public Player {};
INSTANTIATE_TEST_SUITE_P(Interfaces, CorePlayer, testing::Values(library_api::core),
                         [](const auto&) { return "core"; });

TEST_P(CorePlayer, ResendsNowAndNext) {
    play({kResend, kClock, kService, kSchedule, kResend});
    EXPECT_THAT(received_,
                ElementsAreArray({kEmptyPair, kBreakfast, kFirstPair, kElevenses, kSecondPair, kSecondPair}));
}

}  // namespace

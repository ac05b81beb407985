// A wait for a thread that takes too long: one report, and the wait goes on.
#include <gtest/gtest.h>

#include <mutex>
#include <string>
#include <vector>

#include "platform/posix/zeb_posix.h"
#include "platform/zeb_thread.h"
#include "testkit/journal.h"
#include "tests/event/watchdog.h"

namespace {

journal<ZebDebugMessage> reports;
gate* may_end = nullptr;

// Lets the thread go only when the report is complete.
void collect(const ZebDebugMessage& message) {
    reports.add(message);
    if (message.line == 298) may_end->open();
}

struct waiting_body {
    void operator()() {
        may_end->wait();
        ended = true;
    }
    bool ended = false;
};

TEST(ThreadTimeOut, IsReportedOnceAndTheJoinGoesOn) {
    const watchdog guard;
    gate opened_by_the_report;
    may_end = &opened_by_the_report;
    const ZebDebugSink before = zeb_set_debug_sink(&collect);
    waiting_body body;
    ZebThread<waiting_body> thread(&body, "slow", 1);
    ASSERT_TRUE(thread.Start());
    EXPECT_EQ(thread.WaitExit(3), 1);
    zeb_set_debug_sink(before);
    EXPECT_TRUE(body.ended);

    const auto messages = reports.take();
    ASSERT_EQ(messages.size(), 2U);
    for (const ZebDebugMessage& message : messages) {
        EXPECT_EQ(message.channel, ZebDebugMessage::kDebug);
        EXPECT_EQ(message.source, "platform/zeb_thread.h");
        EXPECT_EQ(message.function, "WaitEventTimeoutThread");
        EXPECT_EQ(message.tag, 1);
    }
    EXPECT_EQ(messages[0].line, 297);
    EXPECT_EQ(messages[0].text, "Error, ZebThread::WaitExit() timed out[3ms]. thread name[slow]\n");
    EXPECT_EQ(messages[1].line, 298);
    EXPECT_EQ(messages[1].text,
              "#########\n#########\nASSERT Failed! - platform/zeb_thread.h(298)\n#########\n#########\n");
}

TEST(ThreadTimeOut, IsReportedAgainAfterTheThreadWasStartedAgain) {
    const watchdog guard;
    const ZebDebugSink before = zeb_set_debug_sink(&collect);
    waiting_body body;
    ZebThread<waiting_body> thread(&body, "slow", 1);
    for (int round = 0; round < 3; ++round) {
        gate opened_by_the_report;
        may_end = &opened_by_the_report;
        ASSERT_TRUE(thread.Start());
        EXPECT_EQ(thread.WaitExit(3), 1);
        EXPECT_EQ(reports.take().size(), 2U) << "round " << round;
    }
    zeb_set_debug_sink(before);
}

}  // namespace

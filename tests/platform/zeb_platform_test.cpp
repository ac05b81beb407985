// The small parts of the stand-alone platform: debug output, registry, locks, events, bounded copies.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "platform/zeb_debug.h"
#include "platform/zeb_string.h"
#include "platform/zeb_sync.h"
#include "platform/zeb_thread.h"
#include "testkit/journal.h"
#include "tests/event/watchdog.h"
#include "tests/support/captured_debug.h"
#include "tests/support/captured_stderr.h"

namespace {

TEST(DebugOutput, GoesToStandardErrorWithItsPlace) {
    const captured_stderr log;
    ZebDbgOutput::DbgPrint("source.cpp", "Function", 12, 1, "value %d\n", 5);
    ZebDbgOutput::DbgPrintStdErr("source.cpp", "Other", 13, "text %s\n", "end");
    EXPECT_EQ(log.text(), "[source.cpp Function:12] value 5\n[source.cpp Other:13] text end\n");
}

TEST(DebugOutput, MessagesOfManyThreadsStayWhole) {
    const captured_stderr log;
    // Otherwise two writes at once may land on the same place of the file that collects them.
    ASSERT_EQ(fcntl(STDERR_FILENO, F_SETFL, O_APPEND), 0);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([] {
            for (int n = 0; n < 100; ++n)
                ZebDbgOutput::DbgPrint("s", "f", 1, 1, "%s\n", std::string(200, 'x').c_str());
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    std::string expected;
    for (int n = 0; n < 400; ++n)
        expected += "[s f:1] " + std::string(200, 'x') + "\n";
    EXPECT_TRUE(log.text() == expected);  // too long to be printed
}

TEST(DebugOutput, AnOverlongMessageIsCut) {
    captured_debug debug;
    ZebDbgOutput::DbgPrint("s", "f", 1, 1, "%s", std::string(20000, 'x').c_str());
    const auto messages = debug.take();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].text, std::string(8191, 'x'));
}

TEST(CallStack, IsPrintedToStandardError) {
    const captured_stderr log;
    ZebCallStack::dumpDirectly(-1);
    EXPECT_NE(log.text(), "");
}

TEST(ThreadRegistry, AnInvalidThreadHasNoPriority) {
    captured_debug debug;
    EXPECT_EQ(ZebThreadMng::GetPriority(-1), 0);
    const auto messages = debug.take();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].channel, ZebDebugMessage::kDebug);
    EXPECT_EQ(messages[0].function, "GetPriority");
    EXPECT_EQ(messages[0].line, 356);
    EXPECT_EQ(messages[0].tag, 1);
    EXPECT_EQ(messages[0].text, "invalid thread id\n");
}

TEST(ThreadRegistry, AValidThreadHasOneAndNothingIsPrinted) {
    captured_debug debug;
    const long self = syscall(SYS_gettid);
    const int priority = ZebThreadMng::GetPriority(self);
    ZebThreadMng::SetPriority(self, priority);
    EXPECT_EQ(ZebThreadMng::GetPriority(self), priority);
    EXPECT_TRUE(debug.take().empty());
}

TEST(ThreadRegistry, UnregisteringAStrangerDoesNothing) {
    captured_debug debug;
    ZebThreadMng::unregisterThreadInfo(pthread_self());
    EXPECT_TRUE(debug.take().empty());
}

TEST(SyncLock, IsRecursive) {
    const watchdog guard;
    const ZebSync sync;
    const ZebSyncGuard<ZebSync> outer(sync);
    const ZebSyncGuard<ZebSync> inner(sync);
}

TEST(SyncLock, KeepsOtherThreadsOut) {
    const watchdog guard;
    const ZebSync sync;
    int counter = 0;  // guarded by sync
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int n = 0; n < 1000; ++n) {
                const ZebSyncGuard<ZebSync> hold(sync);
                ++counter;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(counter, 4000);
}

struct counting_lock {
    mutable int locks = 0;
    mutable int unlocks = 0;
    void lock() const { ++locks; }
    void unlock() const { ++unlocks; }
};

TEST(SyncGuard, LocksForTheLengthOfItsBlock) {
    const counting_lock lock;
    {
        const ZebSyncGuard<counting_lock> guard(lock);
        EXPECT_EQ(lock.locks, 1);
        EXPECT_EQ(lock.unlocks, 0);
    }
    EXPECT_EQ(lock.locks, 1);
    EXPECT_EQ(lock.unlocks, 1);
}

TEST(SyncGuard, UnlocksWhenAnExceptionLeaves) {
    const counting_lock lock;
    try {
        const ZebSyncGuard<counting_lock> guard(lock);
        throw 1;
    } catch (int) {
    }
    EXPECT_EQ(lock.unlocks, 1);
}

TEST(WaitableEvent, RunsOutOfTime) {
    ZebEvent event;
    EXPECT_FALSE(event.Wait(0));
    EXPECT_FALSE(event.Wait(2));
}

TEST(WaitableEvent, KeepsItsState) {
    ZebEvent event;
    event.Set();
    EXPECT_TRUE(event.Wait(0));
    EXPECT_TRUE(event.Wait(0));
}

TEST(WaitableEvent, WakesWhoWaits) {
    const watchdog guard;
    ZebEvent event;
    std::thread waiter([&] { EXPECT_TRUE(event.Wait(100000)); });
    event.Set();
    waiter.join();
}

template <std::size_t N>
std::string copied(const char* source) {
    char buffer[N + 1];
    std::memset(buffer, '#', sizeof buffer);
    zeb_strcpy(buffer, N, source);
    EXPECT_EQ(buffer[N], '#') << "written beyond the end";
    return buffer;
}

TEST(BoundedCopy, FitsOrIsCutOff) {
    EXPECT_EQ(copied<8>("dabspi"), "dabspi");
    EXPECT_EQ(copied<7>("dabspi"), "dabspi");
    EXPECT_EQ(copied<6>("dabspi"), "dabsp");
    EXPECT_EQ(copied<1>("dabspi"), "");
    EXPECT_EQ(copied<4>(""), "");
}

TEST(BoundedCopy, OfNoRoomWritesNothing) {
    char buffer[2] = {'#', '#'};
    zeb_strcpy(buffer, 0, "dabspi");
    zeb_strncpy(buffer, 0, "dabspi", 3);
    EXPECT_EQ(buffer[0], '#');
}

TEST(BoundedCopy, TakesAtMostTheGivenCount) {
    char buffer[16];
    zeb_strncpy(buffer, sizeof buffer, "dabspi", 3);
    EXPECT_STREQ(buffer, "dab");
    zeb_strncpy(buffer, sizeof buffer, "dabspi", 100);
    EXPECT_STREQ(buffer, "dabspi");
    zeb_strncpy(buffer, 4, "dabspi", 15);
    EXPECT_STREQ(buffer, "dab");
    zeb_strncpy(buffer, sizeof buffer, "dabspi", 0);
    EXPECT_STREQ(buffer, "");
}

TEST(BoundedCopy, DoesNotReadBeyondTheCount) {
    const std::vector<char> unended = {'d', 'a', 'b'};  // a read beyond it is seen by AddressSanitizer
    char buffer[16];
    zeb_strncpy(buffer, sizeof buffer, unended.data(), 3);
    EXPECT_STREQ(buffer, "dab");
}

}  // namespace

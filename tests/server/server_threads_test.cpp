// The server's six threads as the system and the framework see them: how they are made, and how they are
// waited for.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <vector>

#include "platform/zeb_debug.h"
#include "platform/zeb_sync.h"
#include "platform/zeb_thread.h"
#include "testkit/journal.h"
#include "tests/event/watchdog.h"
#include "tests/server/fed_server.h"
#include "tests/server/live_threads.h"
#include "tests/support/captured_debug.h"

namespace {

struct creation {
    pthread_t handle;
    bool default_attributes;
};
struct registration {
    std::string name;
    int value;
};
journal<creation> created;
journal<registration> registered;
journal<pthread_t> unregistered;
journal<int> limits;  // of the waits, in milliseconds
std::atomic<int> priorities_set{0};
std::atomic<bool> waits_run_out{false};

}  // namespace

extern "C" {
int __real_pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*),
                          void* argument);
int __wrap_pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*),
                          void* argument) {
    const int failed = __real_pthread_create(thread, attributes, start, argument);
    if (failed == 0) created.add({*thread, attributes == nullptr});
    return failed;
}
}

// The framework's side. Each of these classes is defined here whole, so that the archive's is left out.
int ZebThreadMng::GetPriority(long) {
    return 0;
}
void ZebThreadMng::SetPriority(long, int) {
    ++priorities_set;
}
void ZebThreadMng::registerThreadInfo(pthread_t, const char* name, int, int value) {
    registered.add({name, value});
}
void ZebThreadMng::unregisterThreadInfo(pthread_t handle) {
    unregistered.add(handle);
}

struct ZebEvent::state {
    gate set;
};
ZebEvent::ZebEvent() : state_(new state) {}
ZebEvent::~ZebEvent() {
    delete state_;
}
void ZebEvent::Set() {
    state_->set.open();
}
bool ZebEvent::Wait(int milliseconds) {
    limits.add(milliseconds);
    if (waits_run_out) return false;
    state_->set.wait();
    return true;
}

void ZebCallStack::dumpDirectly(int) {}

namespace {

using testing::Each;
using testing::ElementsAreArray;

constexpr std::size_t kThreads = 6;

struct ServerThreads : testing::Test {
    const watchdog guard;
    captured_debug debug;
    std::unique_ptr<spi::SpiServer> server;

    void SetUp() override {
        created.take();
        registered.take();
        unregistered.take();
        limits.take();
        priorities_set = 0;
        waits_run_out = false;
        server = make_server("/nowhere");
    }
};

TEST_F(ServerThreads, AreMadeWithTheSystemsDefaults) {
    const auto all = created.all();
    EXPECT_EQ(all.size(), kThreads);
    for (const creation& thread : all)
        EXPECT_TRUE(thread.default_attributes);
}

TEST_F(ServerThreads, AreRegisteredUnderOneNameAndValueAndAskForNoPriority) {
    const auto all = registered.wait_for(kThreads);
    EXPECT_EQ(all.size(), kThreads);
    for (const registration& thread : all) {
        EXPECT_EQ(thread.name, "dabspi");
        EXPECT_EQ(thread.value, 4000);
    }
    EXPECT_EQ(priorities_set, 0);
}

TEST_F(ServerThreads, AreJoinedFromTheLastMadeToTheFirst) {
    // Made: the server's own, the router's, the listener notifier's, the parser's, the logo store's, the
    // database's. The router ends when the workers that it serves are gone, and the server's own thread after
    // that.
    std::vector<pthread_t> expected;
    for (const creation& thread : created.all())
        expected.push_back(thread.handle);
    std::reverse(expected.begin(), expected.end());
    server.reset();
    EXPECT_THAT(unregistered.all(), ElementsAreArray(expected));
}

TEST_F(ServerThreads, AreEachReportedAfterTenSecondsAndWaitedForAllTheSame) {
    waits_run_out = true;
    server.reset();
    EXPECT_EQ(limits.all().size(), kThreads);
    EXPECT_THAT(limits.all(), Each(10000));
    std::size_t reports = 0;
    for (const ZebDebugMessage& message : debug.take()) {
        if (message.line != 297) continue;
        ++reports;
        EXPECT_EQ(message.text, "Error, ZebThread::WaitExit() timed out[10000ms]. thread name[dabspi]\n");
    }
    EXPECT_EQ(reports, kThreads);
    EXPECT_EQ(unregistered.all().size(), kThreads);
    EXPECT_TRUE(live_threads_become(0));
}

}  // namespace

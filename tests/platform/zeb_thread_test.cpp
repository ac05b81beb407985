// The thread template: starting, waiting, and what is printed when either goes wrong.
#include "platform/zeb_thread.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sched.h>

#include <atomic>
#include <cerrno>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

#include "testkit/journal.h"
#include "tests/event/thread_faults.h"
#include "tests/event/watchdog.h"
#include "tests/support/captured_debug.h"

extern "C" int __real_pthread_join(pthread_t thread, void** result);

namespace {

struct registration {
    pthread_t handle;
    std::string name;
    int priority;
    int value;
};
journal<registration> registered;
journal<pthread_t> unregistered;
journal<long> priorities_asked;
std::atomic<int> stacks_dumped{0};
std::atomic<int> join_error{0};
std::function<void()> instead_of_the_join;  // set before a test's first thread

}  // namespace

// The host's side of the framework. Each of these classes is defined here whole, so that the archive's is
// left out.
int ZebThreadMng::GetPriority(long system_id) {
    priorities_asked.add(system_id);
    return 7;
}
void ZebThreadMng::SetPriority(long, int) {
    ADD_FAILURE() << "a thread asks for a priority";
}
void ZebThreadMng::registerThreadInfo(pthread_t handle, const char* name, int priority, int value) {
    registered.add({handle, name, priority, value});
}
void ZebThreadMng::unregisterThreadInfo(pthread_t handle) {
    unregistered.add(handle);
}
void ZebCallStack::dumpDirectly(int depth) {
    EXPECT_EQ(depth, -1);
    ++stacks_dumped;
}

extern "C" int __wrap_pthread_join(pthread_t thread, void** result) {
    if (instead_of_the_join) {  // the thread was detached by somebody else, and runs on
        pthread_detach(thread);
        const auto instead = instead_of_the_join;  // which may end it
        instead();
        return EINVAL;
    }
    const int real = __real_pthread_join(thread, result);
    const int error = join_error.exchange(0);
    return error != 0 ? error : real;
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct body {
    std::function<void()> run;
    void operator()() { run(); }
};

struct Thread : testing::Test {
    const watchdog guard;
    captured_debug debug;
    thread_faults threads;

    void SetUp() override {
        registered.take();
        unregistered.take();
        priorities_asked.take();
        stacks_dumped = 0;
        join_error = 0;
    }
    void TearDown() override { instead_of_the_join = nullptr; }

    ZebDebugMessage only_message() {
        const auto messages = debug.take();
        EXPECT_EQ(messages.size(), 1U);
        return messages.empty() ? ZebDebugMessage{} : messages[0];
    }
    static void expect(const ZebDebugMessage& message, const std::string& function, int line,
                       const std::string& text) {
        EXPECT_EQ(message.channel, ZebDebugMessage::kDebug);
        EXPECT_EQ(message.source, "platform/zeb_thread.h");
        EXPECT_EQ(message.function, function);
        EXPECT_EQ(message.line, line);
        EXPECT_EQ(message.tag, 1);
        EXPECT_EQ(message.text, text);
    }
};

TEST_F(Thread, RunsItsBindingAndIsJoined) {
    journal<pthread_t> ran_on;
    body binding{[&] { ran_on.add(pthread_self()); }};
    ZebThread<body> thread(&binding, "worker", 4000);
    EXPECT_TRUE(thread.Start());
    EXPECT_EQ(thread.WaitExit(10000), 1);
    const auto on = ran_on.all();
    ASSERT_EQ(on.size(), 1U);
    EXPECT_FALSE(pthread_equal(on[0], pthread_self()));
    EXPECT_THAT(debug.take(), IsEmpty());
    EXPECT_EQ(threads.result(1), nullptr);
}

TEST_F(Thread, RegistersItselfBeforeItsBodyRuns) {
    long kernel_id = 0;
    std::size_t registered_before = 0;
    pthread_t self{};
    body binding{[&] {
        registered_before = registered.all().size();
        kernel_id = syscall(SYS_gettid);
        self = pthread_self();
    }};
    ZebThread<body> thread(&binding, "worker", 4000);
    thread.Start();
    EXPECT_THAT(unregistered.all(), IsEmpty());
    thread.WaitExit(10000);
    EXPECT_EQ(registered_before, 1U);
    const auto all = registered.all();
    ASSERT_EQ(all.size(), 1U);
    EXPECT_TRUE(pthread_equal(all[0].handle, self));
    EXPECT_EQ(all[0].name, "worker");
    EXPECT_EQ(all[0].priority, 7);
    EXPECT_EQ(all[0].value, 4000);
    EXPECT_THAT(priorities_asked.all(), ElementsAre(kernel_id));
    const auto gone = unregistered.all();
    ASSERT_EQ(gone.size(), 1U);
    EXPECT_TRUE(pthread_equal(gone[0], self));
}

TEST_F(Thread, AlwaysRegistersUnderItsOwnHandle) {
    // Even when it runs before its creator has got the handle.
    for (int round = 0; round < 300; ++round) {
        registered.take();
        pthread_t self{};
        body binding{[&] { self = pthread_self(); }};
        ZebThread<body> thread(&binding, "worker", 4000);
        thread.Start();
        thread.WaitExit(10000);
        const auto all = registered.all();
        ASSERT_EQ(all.size(), 1U);
        ASSERT_TRUE(pthread_equal(all[0].handle, self)) << "round " << round;
    }
}

TEST_F(Thread, TakesFifteenCharactersOfItsNameToTheKernel) {
    std::string kernel_name;
    body binding{[&] {
        char name[16] = {};
        pthread_getname_np(pthread_self(), name, sizeof name);
        kernel_name = name;
    }};
    ZebThread<body> thread(&binding, "a name of twenty-one", 1);
    gate named;
    const auto run = binding.run;
    binding.run = [&] {
        named.wait();  // it is named by its creator
        run();
    };
    thread.Start();
    named.open();
    thread.WaitExit(10000);
    EXPECT_EQ(kernel_name, "a name of twent");
}

TEST_F(Thread, KeepsAtMost127CharactersOfItsName) {
    body binding{[] {}};
    ZebThread<body> thread(&binding, std::string(300, 'n').c_str(), 1);
    threads.fail_from_now_on();
    EXPECT_FALSE(thread.Start());
    expect(only_message(), "Start", 223, "ZebThread::Start() failed !! [" + std::string(127, 'n') + "]\r\n");
}

TEST_F(Thread, RefusedByTheSystemIsReported) {
    body binding{[] { ADD_FAILURE() << "it ran"; }};
    ZebThread<body> thread(&binding, "worker", 1);
    threads.fail_from_now_on();
    EXPECT_FALSE(thread.Start());
    expect(only_message(), "Start", 223, "ZebThread::Start() failed !! [worker]\r\n");
    EXPECT_EQ(thread.WaitExit(10000), 1);  // it never ran
    EXPECT_EQ(threads.attempts(), 1U);
    EXPECT_THAT(unregistered.all(), IsEmpty());
}

TEST_F(Thread, StartedTwiceIsReported) {
    gate may_end;
    body binding{[&] { may_end.wait(); }};
    ZebThread<body> thread(&binding, "worker", 1);
    EXPECT_TRUE(thread.Start());
    EXPECT_FALSE(thread.Start());
    expect(only_message(), "Start", 228, "error [worker]\n");
    EXPECT_EQ(threads.attempts(), 1U);
    may_end.open();
    EXPECT_EQ(thread.WaitExit(10000), 1);
}

TEST_F(Thread, StartedWithoutABindingIsReported) {
    ZebThread<body> thread(nullptr, "worker", 1);
    EXPECT_FALSE(thread.Start());
    expect(only_message(), "Start", 228, "error [worker]\n");
    EXPECT_EQ(threads.attempts(), 0U);
}

TEST_F(Thread, MayBeStartedAgainAfterItWasJoined) {
    journal<int> runs;
    body binding{[&] { runs.add(1); }};
    ZebThread<body> thread(&binding, "worker", 1);
    EXPECT_TRUE(thread.Start());
    EXPECT_EQ(thread.WaitExit(10000), 1);
    EXPECT_TRUE(thread.Start());
    EXPECT_EQ(thread.WaitExit(10000), 1);
    EXPECT_EQ(runs.all().size(), 2U);
}

TEST_F(Thread, NeverStartedNeedsNoWait) {
    body binding{[] {}};
    ZebThread<body> thread(&binding, "worker", 1);
    EXPECT_EQ(thread.WaitExit(10000), 1);
    EXPECT_EQ(threads.attempts(), 0U);
    EXPECT_THAT(unregistered.all(), IsEmpty());
}

TEST_F(Thread, IsJoinedWithoutAWatchWhenNobodyCanWatch) {
    gate may_end;
    body binding{[&] { may_end.wait(); }};
    ZebThread<body> thread(&binding, "worker", 1);
    thread.Start();
    threads.fail_from_now_on();
    may_end.open();
    EXPECT_EQ(thread.WaitExit(10000), 1);
    expect(only_message(), "WaitExit", 257, "Error, pthread_create failed.\n");
    EXPECT_EQ(unregistered.all().size(), 1U);
}

TEST_F(Thread, FailedJoinIsReportedOnStandardErrorAndUnregisteredAllTheSame) {
    body binding{[] {}};
    ZebThread<body> thread(&binding, "worker", 1);
    thread.Start();
    join_error = 3;
    EXPECT_EQ(thread.WaitExit(10000), 0);
    const ZebDebugMessage message = only_message();
    EXPECT_EQ(message.channel, ZebDebugMessage::kStdErr);
    EXPECT_EQ(message.function, "WaitExit");
    EXPECT_EQ(message.line, 276);
    EXPECT_EQ(message.text, ", pthread_join() failed !! ret[3]\n");
    EXPECT_EQ(unregistered.all().size(), 1U);
    EXPECT_EQ(thread.WaitExit(10000), 1);  // forgotten
}

// Neither the thread nor its watcher may still use the object, which goes right afterwards.
TEST_F(Thread, ThatCannotBeJoinedIsWaitedForAllTheSame) {
    for (const bool dies : {false, true}) {
        gate refused;
        instead_of_the_join = [&] { refused.open(); };
        std::atomic<bool> ended{false};
        body binding{[&] {
            refused.wait();
            for (int i = 0; i < 1000; ++i)
                sched_yield();
            ended = true;
            if (dies) throw std::runtime_error("late");
        }};
        const auto thread = std::make_unique<ZebThread<body>>(&binding, "worker", 1);
        thread->Start();
        EXPECT_EQ(thread->WaitExit(10000), 0);
        EXPECT_TRUE(ended);
        const auto messages = debug.take();
        ASSERT_EQ(messages.size(), dies ? 3U : 1U);
        EXPECT_EQ(messages[0].line, 276);
        EXPECT_EQ(messages[0].text, ", pthread_join() failed !! ret[22]\n");
    }
}

// Its watcher, which can be joined, has long left then.
TEST_F(Thread, ThatCannotBeJoinedIsWaitedForBeyondTheTimeOut) {
    gate timed_out;
    static gate* opened_by_the_report = nullptr;
    opened_by_the_report = &timed_out;
    const ZebDebugSink before = zeb_set_debug_sink([](const ZebDebugMessage& message) {
        if (message.line == 298) opened_by_the_report->open();
    });
    instead_of_the_join = [] { instead_of_the_join = nullptr; };
    std::atomic<bool> ended{false};
    body binding{[&] {
        timed_out.wait();
        while (!threads.returned(2))
            sched_yield();
        for (int i = 0; i < 1000; ++i)
            sched_yield();
        ended = true;
    }};
    const auto thread = std::make_unique<ZebThread<body>>(&binding, "worker", 1);
    thread->Start();
    EXPECT_EQ(thread->WaitExit(1), 0);
    EXPECT_TRUE(ended);
    zeb_set_debug_sink(before);
}

TEST_F(Thread, ThatIsToWaitForItselfIsReportedAndGoesOn) {
    instead_of_the_join = [] {};
    std::atomic<int> result{-1};
    ZebThread<body>* self = nullptr;
    body binding{[&] {
        result = self->WaitExit(10000);
        throw 1;  // for its result, which tells that it is over
    }};
    ZebThread<body> thread(&binding, "worker", 1);
    self = &thread;
    thread.Start();
    while (threads.result(1) == nullptr)
        sched_yield();
    EXPECT_EQ(result, 0);
    const auto messages = debug.take();
    ASSERT_EQ(messages.size(), 3U);
    EXPECT_EQ(messages[0].text, ", pthread_join() failed !! ret[22]\n");
}

TEST_F(Thread, ItsBodysExceptionIsReportedWithItsTextAndNeverLeavesTheThread) {
    body binding{[] { throw std::runtime_error("boom"); }};
    ZebThread<body> thread(&binding, "worker", 1);
    thread.Start();
    EXPECT_EQ(thread.WaitExit(10000), 1);
    const auto messages = debug.take();
    ASSERT_EQ(messages.size(), 2U);
    expect(messages[0], "Entry", 431, "catch exception. thread name [worker], what [boom]\n");
    expect(messages[1], "Entry", 432,
           "#########\n#########\nASSERT Failed! - platform/zeb_thread.h(432)\n#########\n#########\n");
    EXPECT_EQ(stacks_dumped, 1);
    EXPECT_EQ(threads.result(1), reinterpret_cast<void*>(std::intptr_t{-1}));
}

TEST_F(Thread, AnythingElseThrownIsReportedWithoutAText) {
    body binding{[] { throw "text"; }};
    ZebThread<body> thread(&binding, "worker", 1);
    thread.Start();
    EXPECT_EQ(thread.WaitExit(10000), 1);
    const auto messages = debug.take();
    ASSERT_EQ(messages.size(), 2U);
    expect(messages[0], "Entry", 436, "catch exception. thread name [worker]\n");
    EXPECT_EQ(messages[1].line, 437);
    EXPECT_EQ(threads.result(1), reinterpret_cast<void*>(std::intptr_t{-1}));
}

TEST_F(Thread, EndedByTheSystemIsNoException) {
    body binding{[] { pthread_exit(nullptr); }};
    ZebThread<body> thread(&binding, "worker", 1);
    thread.Start();
    EXPECT_EQ(thread.WaitExit(10000), 1);
    EXPECT_THAT(debug.take(), IsEmpty());
}

}  // namespace

// A worker that dies of its handler: what is reported, and who answers EC_TERM for it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <thread>

#include "platform/zeb_debug.h"
#include "src/event/batch_backend.h"
#include "src/event/quiet.h"
#include "src/event/term_event.h"
#include "testkit/journal.h"
#include "tests/event/allocation_faults.h"
#include "tests/event/scripted_worker.h"
#include "tests/event/thread_faults.h"
#include "tests/event/watchdog.h"
#include "tests/support/captured_debug.h"

namespace {

std::atomic<int> stacks_dumped{0};
std::atomic<int> last_depth{0};

}  // namespace

// In the place of the platform's, which would print.
void ZebCallStack::dumpDirectly(int depth) {
    ++stacks_dumped;
    last_depth = depth;
}

namespace {

using namespace spi;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kMarker = 1000;

// A router, a stand-in for the server that counts the answers, and a parser that dies of the payload number
// 13.
struct DyingWorker : testing::Test {
    const watchdog guard;
    thread_faults threads;
    captured_debug debug;
    journal<int> answers;  // 0 for an EC_TERM, else a marker's number
    batch_backend router;  // thread 1
    scripted_worker server{
        QID_SERV, [this](event& e) { answers.add(e.code() == EC_TERM ? 0 : number_of(e)); }};  // thread 2

    journal<int> handled;
    journal<int> post_ran;
    gate may_die;
    std::unique_ptr<scripted_worker> parser;  // thread 3
    static constexpr unsigned kParserThread = 3;

    void make_parser(std::function<void()> die) {
        parser = std::make_unique<scripted_worker>(
            QID_PARSE,
            [this, die](event& e) {
                if (e.code() == EC_TERM) return parser->answer(e);
                handled.add(number_of(e));
                if (number_of(e) != 13) return;
                may_die.wait();
                die();
            },
            nullptr, [this] { post_ran.add(1); });
        router.register_queue(parser.get());
    }

    void SetUp() override {
        router.register_queue(&server);
        stacks_dumped = 0;
    }
    void TearDown() override {
        if (parser) {
            router.unregister_queue(QID_PARSE, false);
            parser.reset();
        }
        router.destroy_proc();
    }

    void ask() { router.post(std::make_shared<term_event>(), QID_PARSE); }
    // Posted past the router: there at once.
    void ask_directly() { parser->post(std::make_shared<term_event>(), QID_PARSE); }

    // Every answer that was on its way when this was called.
    std::vector<int> answers_now() {
        router.post(numbered(kMarker), QID_SERV);
        std::vector<int> all;
        for (std::size_t count = 1;; ++count) {
            all = answers.wait_for(count);
            if (all.size() < count || all[count - 1] == kMarker) break;
        }
        if (!all.empty()) all.pop_back();
        return all;
    }
};

TEST_F(DyingWorker, OfAnExceptionIsReportedWithItsText) {
    make_parser([] { throw std::runtime_error("boom"); });
    may_die.open();
    parser->post(numbered(13), QID_PARSE);
    handled.wait_for(1);
    parser->destroy_proc();
    const auto messages = debug.take();
    ASSERT_EQ(messages.size(), 2U);
    for (const ZebDebugMessage& message : messages) {
        EXPECT_EQ(message.channel, ZebDebugMessage::kDebug);
        EXPECT_EQ(message.source, "platform/zeb_thread.h");
        EXPECT_EQ(message.function, "Entry");
        EXPECT_EQ(message.tag, 1);
    }
    EXPECT_EQ(messages[0].line, 431);
    EXPECT_EQ(messages[0].text, "catch exception. thread name [dabspi], what [boom]\n");
    EXPECT_EQ(messages[1].text,
              "#########\n#########\nASSERT Failed! - platform/zeb_thread.h(432)\n#########\n#########\n");
    EXPECT_EQ(stacks_dumped, 1);
    EXPECT_EQ(last_depth, -1);
    EXPECT_EQ(threads.result(kParserThread), reinterpret_cast<void*>(std::intptr_t{-1}));
    EXPECT_THAT(post_ran.all(), IsEmpty());
}

TEST_F(DyingWorker, OfSomethingElseIsReportedWithoutAText) {
    make_parser([] { throw 42; });
    may_die.open();
    parser->post(numbered(13), QID_PARSE);
    handled.wait_for(1);
    parser->destroy_proc();
    const auto messages = debug.take();
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_EQ(messages[0].function, "Entry");
    EXPECT_EQ(messages[0].line, 436);
    EXPECT_EQ(messages[0].tag, 1);
    EXPECT_EQ(messages[0].text, "catch exception. thread name [dabspi]\n");
    EXPECT_EQ(messages[1].text,
              "#########\n#########\nASSERT Failed! - platform/zeb_thread.h(437)\n#########\n#########\n");
    EXPECT_EQ(stacks_dumped, 1);
    EXPECT_EQ(threads.result(kParserThread), reinterpret_cast<void*>(std::intptr_t{-1}));
}

TEST_F(DyingWorker, OrdinaryEndHasTheResultZeroAndNoReport) {
    make_parser([] {});
    parser->destroy_proc();
    EXPECT_THAT(debug.take(), IsEmpty());
    EXPECT_EQ(threads.result(kParserThread), nullptr);
    EXPECT_THAT(post_ran.all(), ElementsAre(1));
    EXPECT_EQ(stacks_dumped, 0);
}

TEST_F(DyingWorker, AnswersWhatWasQueuedBeforeItsDeathAndWhatIsPostedAfter) {
    make_parser([] { throw std::runtime_error("boom"); });
    parser->post(numbered(13), QID_PARSE);
    handled.wait_for(1);
    for (int i = 0; i < 3; ++i) {
        ask_directly();
        parser->post(numbered(i), QID_PARSE);
    }
    EXPECT_THAT(answers.all(), IsEmpty());
    may_die.open();
    EXPECT_THAT(answers.wait_for(3), ElementsAre(0, 0, 0));
    ask();
    ask_directly();
    answers.wait_for(5);
    EXPECT_THAT(answers_now(), ElementsAre(0, 0, 0, 0, 0));
    EXPECT_THAT(handled.all(), ElementsAre(13));
}

TEST_F(DyingWorker, AnswersARequestThatItDiedOfOnce) {
    parser = std::make_unique<scripted_worker>(QID_PARSE, [](event&) { throw std::runtime_error("boom"); });
    router.register_queue(parser.get());
    ask();
    answers.wait_for(1);
    EXPECT_THAT(answers_now(), ElementsAre(0));
}

TEST_F(DyingWorker, OfARequestThatItHadAnsweredAnswersItNotAgain) {
    parser = std::make_unique<scripted_worker>(QID_PARSE, [this](event& e) {
        parser->answer(e);
        throw std::runtime_error("boom");
    });
    router.register_queue(parser.get());
    ask();
    answers.wait_for(1);
    parser->destroy_proc();  // its thread has ended
    EXPECT_THAT(answers_now(), ElementsAre(0));
}

TEST_F(DyingWorker, OfARequestThatItHadAnsweredInItsOwnWayAnswersItNotAgain) {
    parser = std::make_unique<scripted_worker>(QID_PARSE, [this](event&) {
        parser->send(std::make_shared<term_event>(), QID_SERV);
        throw std::runtime_error("boom");
    });
    router.register_queue(parser.get());
    ask();
    answers.wait_for(1);
    parser->destroy_proc();
    EXPECT_THAT(answers_now(), ElementsAre(0));
}

TEST_F(DyingWorker, OfARequestAnswersTheOthersAsWell) {
    parser = std::make_unique<scripted_worker>(QID_PARSE, [this](event& e) {
        if (e.code() != EC_TERM) return may_die.wait();
        throw std::runtime_error("boom");
    });
    router.register_queue(parser.get());
    parser->post(numbered(1), QID_PARSE);
    for (int i = 0; i < 3; ++i)
        ask_directly();
    may_die.open();
    answers.wait_for(3);
    parser->destroy_proc();
    EXPECT_THAT(answers_now(), ElementsAre(0, 0, 0));
}

TEST_F(DyingWorker, InItsPreHookItAnswersLikewise) {
    parser = std::make_unique<scripted_worker>(
        QID_PARSE, [this](event& e) { handled.add(e.code()); }, [] { throw std::runtime_error("boom"); });
    router.register_queue(parser.get());
    parser->destroy_proc();  // its thread has ended
    ask();
    answers.wait_for(1);
    EXPECT_THAT(answers_now(), ElementsAre(0));
    EXPECT_THAT(handled.all(), IsEmpty());
}

TEST_F(DyingWorker, IsNotRestartedAndKeepsWhatIsPostedToIt) {
    make_parser([] { throw std::runtime_error("boom"); });
    may_die.open();
    parser->post(numbered(13), QID_PARSE);
    ask();
    answers.wait_for(1);  // answered, alive or dead; then it is dead at the latest
    auto payload = numbered(14);
    const std::weak_ptr<i_evt_base> kept = payload;
    EXPECT_EQ(parser->post(std::move(payload), QID_PARSE), 0);
    EXPECT_EQ(threads.attempts(), 3U);
    parser->destroy_proc();
    EXPECT_FALSE(kept.expired());
    EXPECT_THAT(handled.all(), ElementsAre(13));
    router.unregister_queue(QID_PARSE, false);
    parser.reset();
    EXPECT_TRUE(kept.expired());
}

TEST_F(DyingWorker, TheOthersGoOn) {
    journal<int> other_handled;
    scripted_worker other(QID_EVTDB, [&](event& e) { other_handled.add(number_of(e)); });
    router.register_queue(&other);
    make_parser([] { throw std::runtime_error("boom"); });
    may_die.open();
    router.post(numbered(13), QID_PARSE);
    ask();
    answers.wait_for(1);
    router.post(numbered(5), QID_ALL);
    EXPECT_THAT(other_handled.wait_for(1), ElementsAre(5));
    router.unregister_queue(QID_EVTDB, false);
}

TEST_F(DyingWorker, WhileOthersPostToItItAnswersEachRequestOnce) {
    for (int round = 0; round < 200; ++round) {
        scripted_worker worker(QID_CBHDL, [](event& e) {
            if (number_of(e) == 13) throw std::runtime_error("boom");
        });
        router.register_queue(&worker);
        gate start;
        std::thread poster([&] {
            start.wait();
            for (int i = 0; i < 20; ++i)
                worker.post(std::make_shared<term_event>(), QID_CBHDL);
        });
        for (int i = 0; i < 5; ++i)
            worker.post(numbered(13), QID_CBHDL);
        start.open();
        poster.join();
        const auto total = static_cast<std::size_t>(round + 1) * 20;
        ASSERT_EQ(answers.wait_for(total).size(), total);
        router.unregister_queue(QID_CBHDL, false);
    }
    EXPECT_EQ(answers_now().size(), 4000U);
}

TEST_F(DyingWorker, OfMissingMemoryIsReportedAndAnswered) {
    make_parser([] { delete new int; });
    parser->post(numbered(13), QID_PARSE);
    handled.wait_for(1);
    ask_directly();
    {
        const allocation_faults fault(kParserThread, 1, allocation_faults::kOnce);
        may_die.open();
        answers.wait_for(1);
        EXPECT_TRUE(fault.struck());
    }
    EXPECT_THAT(answers_now(), ElementsAre(0));
    parser->destroy_proc();
    const auto messages = debug.take();
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_EQ(messages[0].line, 431);
    EXPECT_EQ(messages[0].text, "catch exception. thread name [dabspi], what [std::bad_alloc]\n");
}

TEST_F(DyingWorker, WithoutMemoryForTheAnswerSaysThatOneIsLost) {
    make_parser([] { delete new int; });
    parser->post(numbered(13), QID_PARSE);
    handled.wait_for(1);
    ask_directly();
    EXPECT_FALSE(router.lost_an_answer());
    {
        const allocation_faults fault(kParserThread, 1, allocation_faults::kFromThenOn);
        may_die.open();
        parser->destroy_proc();
    }
    EXPECT_TRUE(router.lost_an_answer());
    EXPECT_THAT(answers_now(), IsEmpty());
}

TEST_F(DyingWorker, WhoseThreadNeverStartedAnswersAndKeepsTheRest) {
    threads.fail_from_now_on();
    make_parser([] {});
    EXPECT_FALSE(parser->started());
    ask();
    ask_directly();
    parser->post(numbered(1), QID_PARSE);
    answers.wait_for(2);
    EXPECT_THAT(answers_now(), ElementsAre(0, 0));
    EXPECT_THAT(handled.all(), IsEmpty());
}

TEST_F(DyingWorker, TheServerAnswersNothingForItself) {
    scripted_worker dying(QID_SERV, [](event&) { throw std::runtime_error("boom"); });
    dying.post(std::make_shared<term_event>(), QID_SERV);
    dying.destroy_proc();
    dying.post(std::make_shared<term_event>(), QID_SERV);
    EXPECT_THAT(answers.all(), IsEmpty());
}

}  // namespace

// Construction, the count of EC_TERM, destruction.
#include <future>
#include <mutex>
#include <type_traits>

#include "src/event/payloads.h"
#include "tests/event/log_lines.h"
#include "tests/event/virtual_slot.h"
#include "tests/server/recorded_server.h"

namespace {

using namespace spi;
using testing::ElementsAre;

TEST_F(RecordedServer, MakesItsWorkersInTheirOrder) {
    EXPECT_THAT(recording_worker::made().all(), ElementsAre(QID_CBHDL, QID_PARSE, QID_LOGODB, QID_EVTDB));
    EXPECT_EQ(server->queue_id(), QID_SERV);
}

TEST_F(RecordedServer, StartsWithTheListenerAndBothDirectories) {
    EXPECT_THAT(briefs(started),
                ElementsAre("CBHDL<-EC_EVTCB", "LOGODB<-EC_TEMPROOT", "LOGODB<-EC_LOGOROOT"));
    EXPECT_EQ(started[0].listener, listener.get());
    EXPECT_EQ(started[1].text, "/temp/dab");
    EXPECT_EQ(started[2].text, "/mnt/logos/");
}

TEST_F(RecordedServer, DestroyedAsksEachWorkerInTheirOrder) {
    server.reset();
    EXPECT_THAT(events(),
                ElementsAre("CBHDL<-EC_TERM", "PARSE<-EC_TERM", "LOGODB<-EC_TERM", "EVTDB<-EC_TERM"));
}

TEST_F(RecordedServer, DestroyedEndsItsWorkersInTheOppositeOrder) {
    recording_worker::ended().take();
    server.reset();
    EXPECT_THAT(recording_worker::ended().all(), ElementsAre(QID_EVTDB, QID_LOGODB, QID_PARSE, QID_CBHDL));
}

TEST_F(RecordedServer, HoldsItsLockWhileItsWorkersEnd) {
    std::mutex& lock = server->mutex();
    journal<bool> held;
    recording_worker::on_end([&] {
        // Tried on another thread: the one that destroys owns it.
        const auto taken_by_another = [&lock] {
            if (!lock.try_lock()) return true;
            lock.unlock();
            return false;
        };
        held.add(std::async(std::launch::async, taken_by_another).get());
    });
    server.reset();
    EXPECT_THAT(held.all(), ElementsAre(true, true, true, true));
    recording_worker::on_end({});
}

TEST_F(RecordedServer, DestroyedAtOnceStillHandlesTheStartEventsFirst) {
    server.reset();
    for (int round = 0; round < 300; ++round) {
        recording_worker::forget_all();
        start();
        server.reset();
        ASSERT_THAT(events(),
                    ElementsAre("CBHDL<-EC_EVTCB", "LOGODB<-EC_TEMPROOT", "LOGODB<-EC_LOGOROOT",
                                "CBHDL<-EC_TERM", "PARSE<-EC_TERM", "LOGODB<-EC_TERM", "EVTDB<-EC_TERM"));
        ASSERT_EQ(recording_worker::handled().all().size(), 7U);
    }
}

TEST_F(RecordedServer, WaitsUntilEveryWorkerHasHandledWhatWasQueued) {
    for (int i = 0; i < 200; ++i)
        feed(7);
    server.reset();
    EXPECT_EQ(recording_worker::handled().all().size(), 204U);
}

TEST_F(RecordedServer, SharesTheListenerWithTheStartEventOnly) {
    // The recording worker keeps none.
    EXPECT_EQ(listener.use_count(), 1);
}

TEST_F(RecordedServer, TheFourthAnswerReleasesTheLockAndAFifthDoesNothing) {
    const captured_stderr log;
    const auto answer = [this] {
        server->post(std::make_shared<term_event>(), QID_SERV);
        quiet();
    };
    for (int i = 0; i < 3; ++i)
        answer();
    EXPECT_FALSE(server->mutex().try_lock());  // the server's thread owns it
    answer();
    server->mutex().lock();  // under the watchdog
    server->mutex().unlock();
    answer();
    EXPECT_EQ(log.text(), "");  // another release would be illicit, and be logged
    server->mutex().lock();
    server->mutex().unlock();
}

TEST_F(RecordedServer, OtherEventsAreNotCounted) {
    for (unsigned code = 0; code < 256; ++code) {
        if (code == EC_TERM) continue;
        event e(QID_SERV, std::make_shared<i_evt_base>(static_cast<event_code>(code)));
        server->post_event(e);
    }
    server->post_event(event(QID_SERV, nullptr));
    MotDateTime now;
    for (int i = 0; i < 4; ++i)
        server->SetDateTime(now);
    quiet();
    EXPECT_FALSE(server->mutex().try_lock());
}

TEST_F(RecordedServer, AnEmptyEventIsNoAnswer) {
    MotDateTime now;
    server->SetDateTime(now);
    quiet();  // the server's thread serves, and has its lock
    event empty(QID_SERV, nullptr);
    for (int i = 0; i < 8; ++i)
        server->process_event(empty);
    EXPECT_FALSE(server->mutex().try_lock());
}

TEST_F(RecordedServer, LeavesNoLineInTheLog) {
    const captured_stderr log;
    start();
    feed(7);
    server.reset();
    EXPECT_EQ(log.text(), "");  // the version text, too, is written nowhere
}

TEST(ServerClass, OperationsHaveTheHostsSignatures) {
    EXPECT_TRUE((std::is_constructible_v<SpiServer, std::shared_ptr<ISpiListener>, const std::string&,
                                         const std::string&>));
    EXPECT_TRUE((std::is_same_v<decltype(&SpiServer::FeedMotBody),
                                void (SpiServer::*)(MotBodyMetadata, MotBody&&, ServElemId)>));
    EXPECT_TRUE((std::is_same_v<decltype(&SpiServer::SetCurrentService),
                                void (SpiServer::*)(ServElemId&, unsigned short)>));
    EXPECT_TRUE((std::is_same_v<decltype(&SpiServer::check_ensemble), bool (SpiServer::*)(unsigned short)>));
    EXPECT_TRUE((std::is_same_v<decltype(&SpiServer::SetDateTime), void (SpiServer::*)(MotDateTime&)>));
    EXPECT_TRUE((std::is_same_v<decltype(&SpiServer::ResendNowNext), void (SpiServer::*)()>));
}

TEST(ServerClass, DerivesFromTheLockFirst) {
    EXPECT_TRUE((std::is_base_of_v<term_event_proc, SpiServer>));
    EXPECT_TRUE(std::has_virtual_destructor_v<SpiServer>);
    EXPECT_EQ(virtual_slot(&event_proc::process_event), 2);
}

}  // namespace

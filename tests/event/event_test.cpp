// The routed record and the queue that it waits in.
#include "src/event/event.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "src/event/event_queue.h"
#include "tests/event/scripted_worker.h"

namespace {

using namespace spi;

TEST(Event, WithoutPayloadHasNoDestinationAndNoCode) {
    const event e;
    EXPECT_EQ(e.destination, QID_NONE);
    EXPECT_EQ(e.payload, nullptr);
    EXPECT_EQ(e.code(), EC_NONE);
}

TEST(Event, CodeIsThePayloads) {
    EXPECT_EQ(event(QID_PARSE, numbered(1, EC_ENS)).code(), EC_ENS);
}

TEST(Event, CopiesShareThePayload) {
    const event e(QID_PARSE, numbered(1));
    const event copy = e;
    EXPECT_EQ(copy.payload, e.payload);
    EXPECT_EQ(e.payload.use_count(), 2);
}

TEST(EventQueue, PostingSharesThePayloadAndReturnsZero) {
    const auto payload = numbered(1);
    event e(QID_PARSE, payload);
    {
        event_queue queue(QID_EVTDB);
        EXPECT_EQ(queue.id(), QID_EVTDB);
        EXPECT_EQ(queue.post_event(e), 0);
        EXPECT_EQ(queue.post_event(e), 0);
        EXPECT_EQ(payload.use_count(), 4);
        EXPECT_EQ(e.payload, payload);
    }
    EXPECT_EQ(payload.use_count(), 2);
}

TEST(EventQueue, IsNotPolymorphic) {
    EXPECT_FALSE(std::is_polymorphic_v<event_queue>);
}

}  // namespace

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

}  // namespace

// What a process keeps for good is made at its first use: without memory there. To be run alone in its
// process.
#include <gtest/gtest.h>

#include <memory>

#include "src/event/term_event.h"
#include "tests/event/allocation_faults.h"

namespace {

TEST(FirstPayload, IsReleasedWithoutMemory) {
    auto payload = std::make_shared<spi::term_event>();
    const allocation_faults fault(0, 1, allocation_faults::kFromThenOn);
    payload.reset();
    EXPECT_EQ(payload, nullptr);
}

}  // namespace

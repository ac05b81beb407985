// The first server of a process, which makes what the process keeps for good: run alone in its process.
#include <gtest/gtest.h>

#include "tests/event/allocation_faults.h"
#include "tests/event/thread_faults.h"
#include "tests/event/watchdog.h"
#include "tests/server/fed_server.h"

namespace {

TEST(FirstServer, SurvivesThatNoWorkerHasMemory) {
    const watchdog guard;
    for (int worker = 2; worker <= 6; ++worker) {
        const thread_faults threads;
        const allocation_faults fault(worker, 1, allocation_faults::kFromThenOn);
        make_server("/nowhere");
    }
}

}  // namespace

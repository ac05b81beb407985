// Memory that runs out while a server is made: at every allocation in turn, once and from then on. Each trial
// is a process of its own, so that one that ends badly is told by its number and does not hide the others.
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <new>

#include "platform/posix/zeb_posix.h"
#include "spi_wrap/to_spi_server.h"
#include "src/event/quiet.h"
#include "tests/wrap/failing_new.h"
#include "tests/wrap/wrap_fixture.h"

namespace {

enum outcome : int {
    kConstructed = 0,  // without a failure: the sweep is at its end
    kConstructedAnyway =
        1,  // an allocation failed, on one of the library's threads or where it does not matter
    kThrew = 2,
    kOtherException = 10,
    kLeaked = 11,
    kThreadsStayed = 12,
    kDescriptorsStayed = 13,
    kMappingStayed = 14,
    kUnusableAfterwards = 15,
};

void drop_message(const ZebDebugMessage&) {}

bool can_be_made() {
    const spi_wrap::toSpiServer server(nullptr);
    return spi::wait_until_quiet(std::chrono::seconds(60));
}

struct state_t {
    long living;
    int threads;
    int descriptors;
};

int differs(const state_t& before) {
    if (!wait_for_threads(before.threads)) return kThreadsStayed;
    if (open_descriptors() != before.descriptors) return kDescriptorsStayed;
    if (mappings_of("SysDataInfo") != 0) return kMappingStayed;
    return failing_new::living() == before.living ? 0 : kLeaked;
}

int trial(long n, failing_new::mode_t mode, bool through_destruction) {
    zeb_set_debug_sink(&drop_message);
    const int threads = running_threads();
    if (!can_be_made()) return kUnusableAfterwards;  // what is allocated once for all is allocated now
    if (!wait_for_threads(threads)) return kThreadsStayed;
    const state_t before{failing_new::living(), running_threads(), open_descriptors()};
    int result = kOtherException;
    failing_new::fail_at(n, mode);
    try {
        const spi_wrap::toSpiServer server(nullptr);
        if (!through_destruction) failing_new::stop();
        result = failing_new::has_failed() ? kConstructedAnyway : kConstructed;
    } catch (const std::bad_alloc&) {
        result = kThrew;
    } catch (...) {
    }
    failing_new::stop();
    if (const int wrong = differs(before)) return wrong;
    if (!can_be_made()) return kUnusableAfterwards;
    return result;
}

// The exit code, or the signal's number negated.
int in_own_process(long n, failing_new::mode_t mode, bool through_destruction) {
    const pid_t child = fork();
    if (child == 0) {
        alarm(120);
        _exit(trial(n, mode, through_destruction));
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

class OutOfMemory : public ::testing::Test {
 protected:
    OutOfMemory() { here.notes_calls = false; }

    void sweep(failing_new::mode_t mode, bool through_destruction) {
        int threw = 0;
        long n = 1;
        for (; n < 2000; ++n) {
            const int result = in_own_process(n, mode, through_destruction);
            if (result == kConstructed) break;
            if (result == kThrew) ++threw;
            EXPECT_TRUE(result == kThrew || result == kConstructedAnyway)
                << "allocation " << n << ": outcome " << result;
        }
        EXPECT_LT(n, 2000);
        EXPECT_GT(threw, 20);  // or nothing has been shown
    }

    sandbox here;
};

TEST_F(OutOfMemory, OneFailedAllocationMakesConstructionThrowOrSucceed) {
    sweep(failing_new::kOnce, false);
}

TEST_F(OutOfMemory, ConstructionThrowsOrSucceedsWhenNothingIsLeft) {
    sweep(failing_new::kFromThenOn, false);
}

// The library's threads rest, so that the next allocation is the host's own call's.
template <class Call>
void expect_a_report_to_the_host(Call call) {
    ASSERT_TRUE(spi::wait_until_quiet(std::chrono::seconds(60)));
    failing_new::fail_at(1, failing_new::kOnce);
    bool threw = false;
    try {
        call();
    } catch (const std::bad_alloc&) {
        threw = true;
    }
    failing_new::stop();
    EXPECT_TRUE(threw);
    EXPECT_EQ(call(), 0);  // the server stays usable
}

TEST_F(OutOfMemory, ReachesTheHostFromItsOwnCalls) {
    spi_wrap::toSpiServer server(nullptr);
    spi_wrap::ServElemId service{0xC221, 0xE1, 0};
    spi_wrap::MotDateTime now{2026, 3, 2, 10, 30};
    spi_wrap::MotBodyMetadata metadata{0, 7, 0, "si.EHB"};
    const unsigned char bytes[] = {0x03, 0x00};
    spi_wrap::MotBody body{sizeof bytes, bytes};
    server.SetDateTime(now);  // handled by every worker: none of their threads is still about to start
    expect_a_report_to_the_host([&] { return server.SetCurrentService(service, 0xC181); });
    expect_a_report_to_the_host([&] { return server.SetDateTime(now); });
    expect_a_report_to_the_host([&] { return server.FeedMotBody(metadata, body, service); });
    EXPECT_TRUE(spi::wait_until_quiet(std::chrono::seconds(60)));
}

TEST_F(OutOfMemory, DestructionReturnsWhenNothingIsLeft) {
    sweep(failing_new::kFromThenOn, true);
}

}  // namespace

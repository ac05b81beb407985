// Another process that uses the shared block is killed, at whatever point: the next one neither hangs on the
// lock that it held nor minds the files that it left.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>

#include "platform/zeb_shared_memory.h"
#include "spi_wrap/to_spi_server.h"
#include "tests/event/watchdog.h"
#include "tests/faults/reception_checks.h"

namespace {

std::atomic<long> calls_left{0};
std::atomic<pid_t> to_be_killed{0};

// In the dying process: its n-th call of the system is its last.
int die_at_the_last(const char*, const char*) {
    if (--calls_left == 0) kill(getpid(), SIGKILL);
    return 0;
}

// In the process that lives on: it has come to the lock.
int kill_the_other_at_the_lock(const char* function, const char*) {
    if (std::string_view(function) != "flock") return 0;
    if (const pid_t other = to_be_killed.exchange(0)) kill(other, SIGKILL);
    return 0;
}

struct DyingNeighbour : testing::Test {
    void TearDown() override {
        sandbox::refuse = nullptr;
        const watchdog guard;
        expect_a_faultless_reception(surface::kWrapper);
    }

    static reception_result play(whole_reception& reception) {
        const watchdog guard;  // a process is split only while it has one thread
        return reception.run();
    }
    enum ending { kKilled, kRegular, kCrashed };
    static ending end_of(pid_t child) {
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        if (WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) return kKilled;
        return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? kRegular : kCrashed;
    }
};

// The calls that are about the lock, the block and the directories; all are its main thread's, so that the
// n-th is the same one each time.
TEST_F(DyingNeighbour, MayBeKilledAtEveryCallOfItsConstruction) {
    {
        whole_reception first(surface::kWrapper);
        play(first);
    }
    for (const auto block : {whole_reception::kFreshBlock, whole_reception::kStandingBlock}) {
        long points = 0;
        int empty_blocks = 0;
        for (;; ++points) {
            SCOPED_TRACE(points + 1);
            whole_reception reception(surface::kWrapper, block);
            const pid_t child = fork();
            ASSERT_NE(child, -1);
            if (child == 0) {
                alarm(100);
                calls_left = points + 1;
                sandbox::refuse = &die_at_the_last;
                { const spi_wrap::toSpiServer server(nullptr); }
                _exit(0);
            }
            const ending end = end_of(child);
            ASSERT_NE(end, kCrashed);    // of itself, or by the alarm: no point was reached then
            if (end == kRegular) break;  // it has lived through all its calls
            const bool empty = std::filesystem::exists(reception.here.block()) &&
                               std::filesystem::is_empty(reception.here.block());
            const reception_result result = play(reception);
            if (empty) {
                // Made and not yet sized: whoever comes later does not grow it.
                ++empty_blocks;
                EXPECT_EQ(result.construction, reception_result::kLogicError);
                EXPECT_EQ(lines_and_texts(result), std::vector<std::string>{"151 mmap error\n"});
                EXPECT_EQ(result.left_behind, "");
                EXPECT_EQ(std::filesystem::file_size(reception.here.block()), 0U);
            } else {
                expect_faultless(result, surface::kWrapper);
            }
            if (HasFailure()) return;
        }
        EXPECT_GT(points, 10);
        EXPECT_EQ(empty_blocks, block == whole_reception::kFreshBlock ? 1 : 0);
        report_tried("SIGKILL of a neighbour", surface::kWrapper,
                     block == whole_reception::kFreshBlock ? "fresh block" : "standing block", points);
    }
}

TEST_F(DyingNeighbour, ThatDiesWhileItIsWaitedForGivesTheLockAway) {
    {
        whole_reception first(surface::kWrapper);
        play(first);
    }
    whole_reception reception(surface::kWrapper);
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    ASSERT_NE(child, -1);
    if (child == 0) {
        alarm(100);
        const ZebSharedSyncObject lock("SysDataInfo");
        lock.lock();
        if (write(ends[1], "x", 1) != 1) _exit(1);
        for (;;)
            pause();
    }
    char byte = 0;
    ASSERT_EQ(read(ends[0], &byte, 1), 1);
    close(ends[0]);
    close(ends[1]);
    to_be_killed = child;
    sandbox::refuse = &kill_the_other_at_the_lock;
    expect_faultless(play(reception), surface::kWrapper);
    EXPECT_EQ(to_be_killed, 0);
    EXPECT_EQ(end_of(child), kKilled);
}

}  // namespace

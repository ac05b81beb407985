// The cross-process lock, under a name that no other process uses.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include "platform/zeb_shared_memory.h"
#include "tests/event/virtual_slot.h"
#include "tests/event/watchdog.h"

namespace {

std::string own_name() {
    return "dabspi-test-lock-" + std::to_string(getpid());
}
// Where the stand-alone platform keeps its lock files.
std::string lock_file() {
    return "/dev/shm/dabspi-" + own_name() + ".lock";
}

// Whether another process could take the lock now. (A second descriptor of the same process counts as
// another one for flock.)
bool is_locked() {
    const int descriptor = open(lock_file().c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor == -1) return false;  // no file: nobody holds it
    const bool refused = flock(descriptor, LOCK_EX | LOCK_NB) == -1;
    close(descriptor);
    return refused;
}

// One byte from process to process.
struct channel {
    int ends[2];
    channel() {
        if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    }
    ~channel() {
        close(ends[0]);
        close(ends[1]);
    }
    void give() const {
        const char byte = 'x';
        if (write(ends[1], &byte, 1) != 1) std::abort();
    }
    bool take() const {
        char byte = 0;
        return read(ends[0], &byte, 1) == 1;
    }
};

TEST(SharedLock, IsRecursiveWithinAProcess) {
    const watchdog guard;
    const ZebSharedSyncObject lock(own_name().c_str());
    EXPECT_FALSE(is_locked());
    lock.lock();
    lock.lock();
    lock.unlock();
    EXPECT_TRUE(is_locked());
    lock.unlock();
    EXPECT_FALSE(is_locked());
}

TEST(SharedLock, IsSharedByAllObjectsOfItsName) {
    const watchdog guard;
    const std::string name = own_name();
    const ZebSharedSyncObject first(name.c_str());
    const ZebSharedSyncObject second(name.c_str());
    const ZebSyncGuard<ZebSharedSyncObject> outer(first);
    { const ZebSyncGuard<ZebSharedSyncObject> nested(second); }
    EXPECT_TRUE(is_locked());  // still the first one's
}

TEST(SharedLock, LeavesNoFileBehind) {
    const watchdog guard;
    {
        const ZebSharedSyncObject lock(own_name().c_str());
        EXPECT_FALSE(std::filesystem::exists(lock_file()));
        const ZebSyncGuard<ZebSharedSyncObject> hold(lock);
        EXPECT_TRUE(std::filesystem::exists(lock_file()));
    }
    EXPECT_FALSE(std::filesystem::exists(lock_file()));
}

TEST(SharedLock, KeepsOtherThreadsOut) {
    const watchdog guard;
    const std::string name = own_name();
    int counter = 0;  // guarded by the lock
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            const ZebSharedSyncObject lock(name.c_str());
            for (int n = 0; n < 200; ++n) {
                const ZebSyncGuard<ZebSharedSyncObject> hold(lock);
                ++counter;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(counter, 800);
}

TEST(SharedLock, KeepsOtherProcessesOut) {
    // Several processes add to a shared counter, not atomically: what is lost shows.
    constexpr int kProcesses = 4;
    constexpr int kRounds = 300;
    const std::string name = own_name();
    auto* const counter = static_cast<volatile int*>(
        mmap(nullptr, sizeof(int), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    ASSERT_NE(const_cast<int*>(counter), MAP_FAILED);
    pid_t children[kProcesses];
    for (pid_t& child : children) {
        child = fork();
        ASSERT_NE(child, -1);
        if (child == 0) {
            alarm(100);
            const ZebSharedSyncObject lock(name.c_str());
            for (int n = 0; n < kRounds; ++n) {
                const ZebSyncGuard<ZebSharedSyncObject> hold(lock);
                const int seen = *counter;
                if (n % 16 == 0) sched_yield();
                *counter = seen + 1;
            }
            _exit(0);
        }
    }
    for (const pid_t child : children) {
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(*counter, kProcesses * kRounds);
    munmap(const_cast<int*>(counter), sizeof(int));
    EXPECT_FALSE(std::filesystem::exists(lock_file()));
}

TEST(SharedLock, DiesWithTheProcessThatHeldIt) {
    const std::string name = own_name();
    const channel locked;
    const pid_t child = fork();
    ASSERT_NE(child, -1);
    if (child == 0) {
        alarm(100);
        const ZebSharedSyncObject lock(name.c_str());
        lock.lock();
        lock.lock();
        locked.give();
        for (;;)
            pause();
    }
    ASSERT_TRUE(locked.take());
    EXPECT_TRUE(is_locked());
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    {
        const watchdog guard;
        const ZebSharedSyncObject lock(name.c_str());
        const ZebSyncGuard<ZebSharedSyncObject> hold(lock);
        EXPECT_TRUE(is_locked());
    }
    EXPECT_FALSE(std::filesystem::exists(lock_file()));  // the dead process's file has gone with ours
}

TEST(SharedLock, ItsVirtualOperationsStandWhereTheGuardExpectsThem) {
    EXPECT_TRUE(std::has_virtual_destructor_v<ZebSharedSyncObject>);
    EXPECT_EQ(virtual_slot(&ZebSharedSyncObject::lock), 2);  // after the destructor's two entries
    EXPECT_EQ(virtual_slot(&ZebSharedSyncObject::unlock), 3);
}

}  // namespace

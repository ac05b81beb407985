// The named lock of the block: held whenever the block is touched, and waited for.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "spi_wrap/spi_server.h"
#include "spi_wrap/sys_data_information.h"
#include "tests/wrap/recording_core.h"
#include "tests/wrap/wrap_fixture.h"

extern "C" int __real_flock(int descriptor, int operation);
extern "C" int __real_open(const char* name, int flags, ...);

namespace {

class BlockLock : public Wrapped {
 protected:
    BlockLock() { recording_core::forget(); }
    std::string lock_file() const { return here.at("/dev/shm/dabspi-SysDataInfo.lock"); }

    // Tried as another process would.
    bool locked() const {
        const int descriptor = __real_open(lock_file().c_str(), O_RDONLY | O_CLOEXEC);
        if (descriptor == -1) return false;
        const bool held = __real_flock(descriptor, LOCK_EX | LOCK_NB) == -1;
        close(descriptor);
        return held;
    }
    static bool touches_the_block(const std::string& call) {
        return call.compare(0, 8, "shm_open") == 0 || call.compare(0, 9, "ftruncate") == 0 ||
               call.compare(0, 4, "mmap") == 0 || call == "read the path";
    }
};

TEST_F(BlockLock, IsHeldWheneverTheBlockIsTouched) {
    std::vector<std::string> touched;
    here.before_call = [&](const std::string& call) {
        if (!touches_the_block(call)) return;
        touched.push_back(call);
        EXPECT_TRUE(locked()) << call;
    };
    EXPECT_EQ(spi_wrap::SysDataInformation().storage_path(), "");
    here.before_call = nullptr;
    EXPECT_EQ(touched.size(), 4U);  // open, size, map, read
}

TEST_F(BlockLock, IsHeldForAnExistingBlockToo) {
    put_block(block_with("/mnt/data"));
    int touched = 0;
    here.before_call = [&](const std::string& call) {
        if (!touches_the_block(call)) return;
        ++touched;
        EXPECT_TRUE(locked()) << call;
    };
    EXPECT_EQ(spi_wrap::SysDataInformation().storage_path(), "/mnt/data");
    here.before_call = nullptr;
    EXPECT_EQ(touched, 4);  // open, open again, map, read
}

TEST_F(BlockLock, IsFreeAndGoneAfterwards) {
    { const spi_wrap::spi_server server(nullptr); }
    EXPECT_FALSE(locked());
    EXPECT_FALSE(std::filesystem::exists(lock_file()));
}

TEST_F(BlockLock, IsNotHeldWhileTheCoreIsMade) {
    bool held = false;
    here.before_call = [&](const std::string& call) {
        if (call == "stat /temp/dab") held = held || locked();
    };
    { const spi_wrap::spi_server server(nullptr); }
    here.before_call = nullptr;
    EXPECT_FALSE(held);
}

// A construction on a thread of its own, which tells when it has come to the lock and when it touches the
// block.
class waiting_construction {
 public:
    // `gate` is released by whoever holds the lock, right before he lets go of it.
    waiting_construction(sandbox& here, const std::atomic<bool>& gate) : here_(here) {
        here.before_call = [this, &gate](const std::string& call) {
            const std::lock_guard<std::mutex> lock(mutex_);
            if (call == "open /dev/shm/dabspi-SysDataInfo.lock") at_the_lock_ = true;
            if (call.compare(0, 8, "shm_open") == 0 && !gate) too_early_ = true;
            changed_.notify_all();
        };
    }
    ~waiting_construction() {
        join();
        here_.before_call = nullptr;
    }
    waiting_construction(const waiting_construction&) = delete;
    waiting_construction& operator=(const waiting_construction&) = delete;

    void start() {
        thread_ = std::thread([this] { path_ = spi_wrap::SysDataInformation().storage_path(); });
    }
    bool wait_until_at_the_lock() {
        std::unique_lock<std::mutex> lock(mutex_);
        return changed_.wait_for(lock, std::chrono::seconds(60), [this] { return at_the_lock_; });
    }
    void join() {
        if (thread_.joinable()) thread_.join();
    }
    bool too_early() const { return too_early_; }
    const std::string& path() const { return path_; }

 private:
    sandbox& here_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool at_the_lock_ = false;
    bool too_early_ = false;
    std::string path_;
    std::thread thread_;
};

TEST_F(BlockLock, AnotherProcessThatHoldsItDelaysConstruction) {
    put_block(block_with("/half"));
    // Shared with the child, which takes the lock, and writes the path when it is told to.
    auto* const shared = static_cast<std::atomic<bool>*>(
        mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    std::atomic<bool>& taken = *new (shared) std::atomic<bool>(false);
    std::atomic<bool>& go_on = *new (shared + 1) std::atomic<bool>(false);
    std::atomic<bool>& gate = *new (shared + 2) std::atomic<bool>(false);
    const std::string block_file = here.block();
    const pid_t child = fork();
    ASSERT_NE(child, -1);
    if (child == 0) {
        const ZebSharedSyncObject lock("SysDataInfo");
        lock.lock();
        taken = true;
        while (!go_on)
            std::this_thread::yield();
        const int file = __real_open(block_file.c_str(), O_WRONLY | O_CLOEXEC);
        const bool written = pwrite(file, "/mnt/data", 10, 4) == 10;
        gate = true;
        lock.unlock();
        _exit(written ? 0 : 1);
    }
    while (!taken)
        std::this_thread::yield();

    waiting_construction other(here, gate);
    other.start();
    EXPECT_TRUE(other.wait_until_at_the_lock());
    go_on = true;
    other.join();
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_FALSE(other.too_early());
    EXPECT_EQ(other.path(), "/mnt/data");  // what was written under the lock
    munmap(shared, 4096);
}

TEST_F(BlockLock, DiesWithTheProcessThatHeldIt) {
    const pid_t child = fork();
    ASSERT_NE(child, -1);
    if (child == 0) {
        const ZebSharedSyncObject lock("SysDataInfo");
        lock.lock();
        _exit(0);  // without letting go
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(std::filesystem::exists(lock_file()));
    EXPECT_EQ(spi_wrap::SysDataInformation().storage_path(), "");  // does not wait
    EXPECT_FALSE(std::filesystem::exists(lock_file()));
}

TEST_F(BlockLock, AnotherThreadThatHoldsItDelaysConstruction) {
    const ZebSharedSyncObject lock("SysDataInfo");
    std::atomic<bool> gate{false};
    lock.lock();
    std::string path;
    std::atomic<bool> begun{false};
    here.before_call = [&](const std::string& call) {
        EXPECT_TRUE(gate.load() || !touches_the_block(call)) << call;
    };
    std::thread other([&] {
        begun = true;
        path = spi_wrap::SysDataInformation().storage_path();
    });
    while (!begun)
        std::this_thread::yield();
    put_block(block_with("/mnt/data"));  // an existing block, made while the other waits
    gate = true;
    lock.unlock();
    other.join();
    here.before_call = nullptr;
    EXPECT_EQ(path, "/mnt/data");
}

TEST_F(BlockLock, MayBeTakenAgainByTheThreadThatHoldsIt) {
    const ZebSharedSyncObject lock("SysDataInfo");
    lock.lock();
    EXPECT_EQ(spi_wrap::SysDataInformation().storage_path(), "");
    EXPECT_TRUE(locked());  // the inner unlock has not let go
    lock.unlock();
    EXPECT_FALSE(locked());
}

}  // namespace

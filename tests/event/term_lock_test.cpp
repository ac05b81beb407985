#include "src/event/term_lock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <system_error>
#include <type_traits>

#include "tests/event/log_lines.h"

namespace {

using namespace spi;
using testing::ElementsAre;

TEST(TermLock, IsMadeUnlocked) {
    term_lock lock;
    EXPECT_FALSE(lock.owns_lock());
    EXPECT_TRUE(lock.mutex().try_lock());
    lock.mutex().unlock();
}

TEST(TermLock, UnlocksSilentlyWhatItOwns) {
    const captured_stderr log;
    term_lock lock;
    lock.lock();
    EXPECT_TRUE(lock.owns_lock());
    lock.unlock("unknown");
    EXPECT_FALSE(lock.owns_lock());
    EXPECT_EQ(log.text(), "");
    EXPECT_TRUE(lock.mutex().try_lock());
    lock.mutex().unlock();
}

TEST(TermLock, SecondLockIsADeadlockError) {
    term_lock lock;
    lock.lock();
    try {
        lock.lock();
        FAIL() << "locked twice";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code().value(), 35);
    }
    EXPECT_TRUE(lock.owns_lock());
}

struct lock_without_mutex : term_lock {
    lock_without_mutex() { lock_ = std::unique_lock<std::mutex>(); }
};

TEST(TermLock, LockWithoutAMutexIsNotPermitted) {
    lock_without_mutex lock;
    try {
        lock.lock();
        FAIL() << "locked without a mutex";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code().value(), 1);
    }
}

TEST(TermLock, IllicitUnlockWritesTwoLinesAndReturns) {
    const captured_stderr log;
    term_lock lock;
    lock.unlock("somebody");
    EXPECT_THAT(messages_of(log.text()),
                ElementsAre(" term_lock - illicit unlock  somebody",
                            " term_lock - unlock fail  somebody   Operation not permitted"));
}

TEST(TermLock, IllicitUnlockAfterALegalOneIsReportedToo) {
    const captured_stderr log;
    term_lock lock;
    lock.lock();
    lock.unlock("unknown");
    lock.unlock("unknown");
    EXPECT_EQ(lines_of(log.text()).size(), 2U);
}

TEST(TermLock, UnlockNeverThrows) {
    EXPECT_TRUE(noexcept(std::declval<term_lock&>().unlock(std::string())));
}

TEST(TermLock, ItsEndUnlocksWhatIsStillOwned) {
    const captured_stderr log;
    term_lock* const lock = new term_lock;
    lock->lock();
    delete lock;  // a mutex that is destroyed locked would be reported by the sanitizers
    EXPECT_EQ(log.text(), "");
}

TEST(TermLock, IsTheFirstBaseOfTheWorkerThatOwnsOne) {
    EXPECT_TRUE((std::is_base_of_v<term_lock, term_event_proc>));
    EXPECT_TRUE((std::is_base_of_v<event_proc, term_event_proc>));
    EXPECT_TRUE(std::has_virtual_destructor_v<term_lock>);
    auto* const whole = reinterpret_cast<term_event_proc*>(alignof(std::max_align_t));
    EXPECT_EQ(static_cast<void*>(static_cast<term_lock*>(whole)), static_cast<void*>(whole));
}

}  // namespace

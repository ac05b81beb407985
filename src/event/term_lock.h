// The lock on which a server's destructor waits until every worker has answered EC_TERM, and the worker that
// owns one.
#pragma once

#include <atomic>
#include <mutex>
#include <string>

#include "src/event/event_proc.h"
#include "src/event/teardown.h"

namespace spi {

// Locked and unlocked by one thread only, the server's; any other thread waits by locking mutex() itself.
class term_lock {
 public:
    // Unlocked.
    term_lock() : lock_(mutex_, std::defer_lock) {}
    // Unlocks if the lock is still owned.
    virtual ~term_lock() = default;
    term_lock(const term_lock&) = delete;
    term_lock& operator=(const term_lock&) = delete;

    // Throws std::system_error: operation not permitted (1) without a mutex, resource deadlock would occur
    // (35) when it is owned already.
    void lock() { lock_.lock(); }

    // Never throws. A lock that is not owned yields two log lines: that the unlock by `who` is illicit, and
    // why it failed.
    void unlock(std::string&& who) noexcept;

    // Whether it is locked. On the owner's thread only.
    bool owns_lock() const { return lock_.owns_lock(); }
    // What other threads wait for.
    std::mutex& mutex() { return mutex_; }

 protected:
    std::mutex mutex_;                   // held while the lock is owned
    std::unique_lock<std::mutex> lock_;  // the owner's thread only
};

// A worker with a termination lock. Its thread takes the lock in pre(); it releases it at the latest when it
// ends, so that whoever waits for it does not wait for a thread that is gone.
class term_event_proc : public term_lock, public event_proc {
 public:
    // Stops the worker, whose thread uses this object to its end; then unlocks if the lock is still owned.
    ~term_event_proc() override { destroy_proc(); }

 protected:
    // The gate is closed: the derived class calls begin().
    explicit term_event_proc(_qid id);

    // Called by the derived class on the worker's thread: the lock has been released for good.
    void disarm() noexcept;

    // Waits until the lock is released for good, or until `given_up()`, tested again whenever a worker's
    // thread ends or an answer is lost. True when it is released.
    template <class Condition>
    bool wait_disarmed(Condition given_up) {
        teardown_monitor().wait([&] { return disarmed_.load() || given_up(); });
        return disarmed_;
    }

 private:
    std::atomic<bool> disarmed_{false};  // released for good, or never to be taken: nobody needs to wait
};

}  // namespace spi

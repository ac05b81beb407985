// Locks and events of the host's platform framework: `ZebSync`, `ZebEvent`, and the guard `ZebSyncGuard` for
// anything that has lock() and unlock().
#pragma once

// A recursive lock within one process. Errors of the system's locks end in std::system_error.
class ZebSync {
 public:
    ZebSync();
    ~ZebSync();
    ZebSync(const ZebSync&) = delete;
    ZebSync& operator=(const ZebSync&) = delete;

    void lock() const;
    void unlock() const;

 private:
    struct state;
    state* state_;
};

// A waitable event that keeps its state: a Wait after Set returns at once.
class ZebEvent {
 public:
    ZebEvent();
    ~ZebEvent();
    ZebEvent(const ZebEvent&) = delete;
    ZebEvent& operator=(const ZebEvent&) = delete;

    void Set();
    // True when the event was set within `milliseconds`, false when the time ran out first.
    bool Wait(int milliseconds);

 private:
    struct state;
    state* state_;
};

// Holds a lock for the length of a block.
template <class Lock>
class ZebSyncGuard {
 public:
    explicit ZebSyncGuard(const Lock& lock) : lock_(lock) { lock_.lock(); }
    ~ZebSyncGuard() { lock_.unlock(); }
    ZebSyncGuard(const ZebSyncGuard&) = delete;
    ZebSyncGuard& operator=(const ZebSyncGuard&) = delete;

 private:
    const Lock& lock_;
};

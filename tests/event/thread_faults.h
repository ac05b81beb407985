// Counts the threads that the library creates, numbers them, and lets the creation of some fail. For
// executables that are linked with WRAP pthread_create; threads that the test makes itself (std::thread) are
// not seen.
#pragma once

#include <functional>

class thread_faults {
 public:
    // From now on counted from 1, and `fails(n)` decides on the n-th. Called on the creating thread.
    explicit thread_faults(std::function<bool(unsigned)> fails = {});
    ~thread_faults();
    thread_faults(const thread_faults&) = delete;
    thread_faults& operator=(const thread_faults&) = delete;

    // Called on the creating thread before each creation, with its number.
    void on_create(std::function<void(unsigned)> hook);

    void fail_from_now_on();

    unsigned attempts() const;

    // Whether the n-th thread's start routine has returned.
    bool returned(unsigned n) const;
    // What the n-th thread's start routine returned; null while it runs.
    void* result(unsigned n) const;

    // The number of the calling thread; 0 for threads that are not the library's.
    static unsigned current();
};

// Lets allocations fail. For executables that link allocation_faults.cpp, which replaces the global operator
// new, and thread_faults.cpp, which numbers the library's threads.
#pragma once

class allocation_faults {
 public:
    enum how { kOnce, kFromThenOn };
    static constexpr int kEveryThread = -1;

    // The n-th allocation (from 1) on thread `thread` from now on throws std::bad_alloc: a number of
    // thread_faults; 0 for threads that are not the library's. Ends with the object.
    allocation_faults(int thread, long n, how repeated);
    ~allocation_faults();
    allocation_faults(const allocation_faults&) = delete;
    allocation_faults& operator=(const allocation_faults&) = delete;

    // Whether one has failed.
    bool struck() const;
    // No more from now on.
    void stop();
};

// Shuffles the timing of threads at the places where it matters, and holds threads back there.
//
// For executables that link sync_points.cpp, with WRAP for the C functions among the calls (CMakeLists.txt
// does): every lock, unlock, wait and notification in the library and in the test then passes a point. A race
// that needs a thread to be interrupted in one exact place shows once in thousands of rounds, or never, on an
// idle machine; with delays at the points it shows in a few.
//
// Measured with the faulty workers of shuffled_doubles_test.cpp on two cores: a wake-up lost between test and
// sleep shows in round 5 to 68 with delays, and in none of 20,000 without; a base class's hook in round 1 to
// 72 against 3 of 20,000; members used after their end in round 1 to 20 against none of 20,000.
// DABSPI_STRESS_UNSHUFFLED=1 leaves the delays out: these tests then fail.
//
// A seed repeats the delays, not what the system's scheduler makes of them: a failure comes again soon, not
// at the same round. The delays are the one place of the tests where threads sleep; no test waits by
// sleeping.
#pragma once

#include <cstdint>

// While it lives, each thread draws a temper from the seed (most go on, some yield at times, some are slow)
// and delays itself accordingly at each point: not at all, by a yield, a short spin, or a nap of some
// microseconds. One at a time, made and destroyed while no other thread of the test runs.
class shuffled_timing {
 public:
    explicit shuffled_timing(std::uint64_t seed);
    ~shuffled_timing();
    shuffled_timing(const shuffled_timing&) = delete;
    shuffled_timing& operator=(const shuffled_timing&) = delete;

    // Points passed since the construction, by all threads.
    std::uint64_t points() const;
    // Those passed by the calling thread.
    std::uint64_t own_points() const;
};

// While it lives, threads stop at the next lock that they want to take: those whose bits are set, by
// thread_faults' numbers (bit 1: the first thread that the library made). One at a time.
class held_threads {
 public:
    explicit held_threads(std::uint32_t numbers);
    ~held_threads() { hold(0); }
    held_threads(const held_threads&) = delete;
    held_threads& operator=(const held_threads&) = delete;

    // From now on these; the others go on.
    void hold(std::uint32_t numbers);
    // Waits until each of these has stopped.
    void wait_until_stopped(std::uint32_t numbers);
};

// Where the threads of a benchmark may run: the calling one, and those that it makes meanwhile.
//
// On several processors the time of a wake-up depends on where the scheduler let the threads fall asleep: on
// one processor it is a switch, from one to another an interrupt, and where the other one is halted it takes
// as long as that needs to run again (a virtual one some 15 µs). Two runs of the same code can differ by that
// more than two versions of it. On one processor they do not.
#pragma once

#include <sched.h>

#include <stdexcept>

namespace bench {

enum class processors {
    kAnywhere,
    kOneProcessor,
    // As well, a woken thread does not run before its waker has to wait: what a call costs by itself.
    kOneProcessorBatch,
};

inline const char* name_of(processors where) {
    switch (where) {
        case processors::kOneProcessor: return "/one_processor";
        case processors::kOneProcessorBatch: return "/one_processor_batch";
        case processors::kAnywhere: break;
    }
    return "";
}

class placement {
 public:
    explicit placement(processors where) {
        check(sched_getaffinity(0, sizeof before_, &before_));
        if (where == processors::kAnywhere) return;
        cpu_set_t one;
        CPU_ZERO(&one);
        CPU_SET(last_of(before_), &one);
        check(sched_setaffinity(0, sizeof one, &one));
        if (where == processors::kOneProcessorBatch) check(set_policy(SCHED_BATCH));
    }
    ~placement() {
        set_policy(SCHED_OTHER);
        sched_setaffinity(0, sizeof before_, &before_);
    }
    placement(const placement&) = delete;
    placement& operator=(const placement&) = delete;

 private:
    static int last_of(const cpu_set_t& processors) {
        int last = CPU_SETSIZE - 1;
        while (last > 0 && !CPU_ISSET(last, &processors))
            --last;
        return last;
    }
    static int set_policy(int policy) {
        const sched_param none{};
        return sched_setscheduler(0, policy, &none);
    }
    static void check(int result) {
        if (result != 0) throw std::runtime_error("the benchmark's threads cannot be placed");
    }

    cpu_set_t before_{};
};

}  // namespace bench

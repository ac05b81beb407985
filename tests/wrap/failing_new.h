// A counting operator new for a whole executable: lets one allocation fail, or all from one on, and counts
// what is allocated and not freed.
#pragma once

namespace failing_new {

enum mode_t { kOnce, kFromThenOn };

// The n-th allocation from now (1 is the next one), on whatever thread, fails.
void fail_at(long n, mode_t mode);
void stop();
// True when an allocation has failed since fail_at().
bool has_failed();
// Whether the first one that failed was the calling thread's.
bool failed_on_this_thread();
// Allocations since fail_at().
long count();
// Blocks allocated and not freed, of the whole process.
long living();

}  // namespace failing_new

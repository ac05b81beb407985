// Lets one call of a C function fail, or every one from then on: the n-th that the library makes, on whatever
// thread, while a fault is armed.
//
// The functions of the sandbox (testkit/sandbox.h) ask here, and so do write, close, readdir, closedir,
// pthread_create, pthread_join, pthread_setname_np and getpriority, which system_faults.cpp wraps. What gives
// something back is carried out although it is refused (close, closedir, munmap): nobody could ask for it
// again, and a test that counts descriptors would count the fault itself. Writes to standard error are not
// counted: they are the messages by which a test knows what happened.
//
// Between arm() and disarm() nothing here takes memory.
#pragma once

#include <cstddef>
#include <string>

namespace system_faults {

enum mode_t { kOnce, kFromThenOn };

// `error` is what the call fails with. pthread_join with ESRCH has joined (as if somebody else had), with
// EINVAL it has detached the thread, which runs on.
void arm(const char* function, long n, mode_t mode, int error);
void disarm();

// Calls of the armed function since arm().
long calls();
// Whether one was refused; the file name that the first of them gave, and how many there were.
bool struck();
std::string struck_on();
long refusals();
// Threads that were refused since arm().
long threads_refused();

// From now on a write (but to standard error) takes at most so many bytes, as a disk that is nearly full
// does.
void take_only(std::size_t bytes);
void take_all();

}  // namespace system_faults

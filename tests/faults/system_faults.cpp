#include "tests/faults/system_faults.h"

#include <dirent.h>
#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "testkit/sandbox.h"

namespace {

std::atomic<const char*> armed{nullptr};
std::atomic<long> first{0};
std::atomic<bool> from_then_on{false};
std::atomic<int> error_number{0};
std::atomic<long> counted{0};
std::atomic<long> refused_calls{0};
std::atomic<long> refused_threads{0};
std::atomic<std::size_t> most_written{SIZE_MAX};
char first_name[8192];  // written by the thread of the first refusal, read after its reception

int refused(const char* function, const char* name = nullptr) {
    const char* const wanted = armed;
    if (wanted == nullptr || std::strcmp(wanted, function) != 0) return 0;
    const long n = ++counted;
    if (n != first && !(from_then_on && n > first)) return 0;
    if (refused_calls++ == 0) std::snprintf(first_name, sizeof first_name, "%s", name == nullptr ? "" : name);
    return error_number;
}

}  // namespace

namespace system_faults {

void arm(const char* function, long n, mode_t mode, int error) {
    disarm();
    counted = 0;
    refused_calls = 0;
    refused_threads = 0;
    first_name[0] = '\0';
    first = n;
    from_then_on = mode == kFromThenOn;
    error_number = error;
    sandbox::refuse = [](const char* called, const char* name) { return refused(called, name); };
    armed = function;
}
void disarm() {
    armed = nullptr;
    refused_threads = 0;  // the next reception's threads are all there
}
long calls() {
    return counted;
}
bool struck() {
    return refused_calls != 0;
}
std::string struck_on() {
    return first_name;
}
long refusals() {
    return refused_calls;
}
long threads_refused() {
    return refused_threads;
}

void take_only(std::size_t bytes) {
    most_written = bytes;
}
void take_all() {
    most_written = SIZE_MAX;
}

}  // namespace system_faults

extern "C" {

ssize_t __real_write(int, const void*, std::size_t);
int __real_close(int);
struct dirent* __real_readdir(DIR*);
int __real_closedir(DIR*);
int __real_pthread_create(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
int __real_pthread_join(pthread_t, void**);
int __real_pthread_setname_np(pthread_t, const char*);
int __real_getpriority(int, id_t);

ssize_t __wrap_write(int descriptor, const void* bytes, std::size_t size) {
    if (descriptor != STDERR_FILENO) {
        if (const int error = refused("write")) {
            errno = error;
            return -1;
        }
        size = std::min(size, most_written.load());
    }
    return __real_write(descriptor, bytes, size);
}

int __wrap_close(int descriptor) {
    const int error = refused("close");
    const int result = __real_close(descriptor);
    if (error == 0) return result;
    errno = error;
    return -1;
}

struct dirent* __wrap_readdir(DIR* directory) {
    if (const int error = refused("readdir")) {
        errno = error;
        return nullptr;
    }
    return __real_readdir(directory);
}

int __wrap_closedir(DIR* directory) {
    const int error = refused("closedir");
    const int result = __real_closedir(directory);
    if (error == 0) return result;
    errno = error;
    return -1;
}

int __wrap_pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*),
                          void* argument) {
    if (const int error = refused("pthread_create")) {
        ++refused_threads;
        return error;
    }
    return __real_pthread_create(thread, attributes, start, argument);
}

int __wrap_pthread_join(pthread_t thread, void** result) {
    const int error = refused("pthread_join");
    if (error == EINVAL) {
        pthread_detach(thread);
        return error;
    }
    const int joined = __real_pthread_join(thread, result);
    return error == 0 ? joined : error;
}

int __wrap_pthread_setname_np(pthread_t thread, const char* name) {
    if (const int error = refused("pthread_setname_np")) return error;
    return __real_pthread_setname_np(thread, name);
}

int __wrap_getpriority(int which, id_t who) {
    if (const int error = refused("getpriority")) {
        errno = error;
        return -1;
    }
    return __real_getpriority(which, who);
}

}  // extern "C"

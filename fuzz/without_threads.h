// Workers without threads, for targets that call the handlers themselves: a thread made and joined for each
// input would cost more than the input. While one of these lives, the library is told that there are no
// threads left, which it bears: the worker counts as dead, and its handler can be called. Needs the target's
// WRAP pthread_create.
#pragma once

#include <pthread.h>

#include <cerrno>

#include "platform/posix/zeb_posix.h"

inline bool threads_are_refused = false;

struct without_threads {
    without_threads() {
        // Each refusal is reported: not what is of interest here.
        static const bool silent = (zeb_set_debug_sink([](const ZebDebugMessage&) {}), true);
        static_cast<void>(silent);
        threads_are_refused = true;
    }
    without_threads(const without_threads&) = delete;
    without_threads& operator=(const without_threads&) = delete;
    ~without_threads() { threads_are_refused = false; }
};

extern "C" int __real_pthread_create(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
extern "C" inline __attribute__((used)) int __wrap_pthread_create(pthread_t* thread,
                                                                  const pthread_attr_t* attributes,
                                                                  void* (*body)(void*), void* argument) {
    // libFuzzer's own threads are made in between.
    return threads_are_refused ? EAGAIN : __real_pthread_create(thread, attributes, body, argument);
}

// Threads of the host's platform framework: the registry `ZebThreadMng` (defined by the host) and the thread
// template `ZebThread`, which is compiled into the library.
//
// The line numbers in the messages are constants: tools that watch a receiver's log know the messages by
// them, so they do not follow this file's own lines.
#pragma once

#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <condition_variable>
#include <cstdint>
#include <exception>
#include <memory>
#include <mutex>
#include <new>
#include <optional>

#include "platform/zeb_debug.h"
#include "platform/zeb_string.h"
#include "platform/zeb_sync.h"

// The framework's table of threads and their priorities. May be called on any thread; never throws.
class ZebThreadMng {
 public:
    // The priority of the thread with the kernel's id `system_id`; with an id below 0 the framework prints
    // "invalid thread id\n" (function "GetPriority", line 356) and answers 0.
    static int GetPriority(long system_id);
    static void SetPriority(long system_id, int priority);
    // `value` is the framework's own; the library passes on what its threads were made with (4000).
    static void registerThreadInfo(pthread_t handle, const char* name, int priority, int value);
    static void unregisterThreadInfo(pthread_t handle);
};

// One thread that runs a binding `B`: an object whose operator() is the thread's body.
//
// Owned by whoever made it, and used by that thread only. It keeps a pointer to the binding, which must
// outlive it. An exception that leaves the body is reported and ends the thread with the result -1; nothing
// is restarted.
template <class B>
class ZebThread {
 public:
    ZebThread(B* binding, const char* name, int value) : binding_(binding), value_(value) {
        zeb_strcpy(name_, sizeof name_, name);
    }
    ZebThread(const ZebThread&) = delete;
    ZebThread& operator=(const ZebThread&) = delete;

    // Creates the thread. False when it is running already, has no binding, or the system refuses: each is
    // reported.
    bool Start() {
        if (handle_ != kNoThread || binding_ == nullptr) {
            ZebDbgOutput::DbgPrint(kSource, "Start", 228, 1, "error [%s]\n", name_);
            return false;
        }
        // Held until the handle is stored: the new thread registers itself under it.
        const ZebSyncGuard<ZebSync> guard(sync_);
        pthread_t created{};
        if (!HasEvent() || !Create(&created, &ZebThread::WrappedEntry, &ZebThread::body_inside_)) {
            ZebDbgOutput::DbgPrint(kSource, "Start", 223, 1, "ZebThread::Start() failed !! [%s]\r\n", name_);
            return false;
        }
        handle_ = created;
        char short_name[16] = {};  // the kernel's limit for a thread's name, its NUL included
        zeb_strncpy(short_name, sizeof short_name, name_, 15);
        pthread_setname_np(created, short_name);
        return true;
    }

    // Waits until the thread has ended. The time-out (milliseconds) never gives a thread up: when it passes,
    // one report is printed and the wait goes on, because teardown must not leave a running thread behind. 1
    // when the thread was joined or never ran, 0 when the join failed (somebody in the host's process joined
    // or detached it): also then it has left this object, and the object may go.
    int WaitExit(int timeout_milliseconds) {
        if (handle_ == kNoThread) return 1;
        timeout_ = timeout_milliseconds;
        pthread_t watchdog{};
        const bool watched =
            Create(&watchdog, &ZebThread::WaitEventTimeoutThread, &ZebThread::watchdog_inside_);
        if (!watched) {
            ZebDbgOutput::DbgPrint(kSource, "WaitExit", 257, 1, "Error, pthread_create failed.\n");
        }
        const bool itself = pthread_equal(handle_, pthread_self()) != 0;  // it cannot wait for itself
        const int joined = pthread_join(handle_, nullptr);
        if (joined != 0) {
            ZebDbgOutput::DbgPrintStdErr(kSource, "WaitExit", 276, ", pthread_join() failed !! ret[%d]\n",
                                         joined);
            if (!itself) WaitUntilLeft(&ZebThread::body_inside_);
        }
        if (watched) {
            ended_->Set();
            if (pthread_join(watchdog, nullptr) != 0) WaitUntilLeft(&ZebThread::watchdog_inside_);
        }
        ended_.reset();  // it stays set: a thread that is started again needs another
        ZebThreadMng::unregisterThreadInfo(handle_);
        handle_ = kNoThread;
        system_id_ = -1;
        return joined == 0 ? 1 : 0;
    }

 private:
    static constexpr const char* kSource = "platform/zeb_thread.h";
    static constexpr pthread_t kNoThread = static_cast<pthread_t>(-1);
    static constexpr int kNoPriority = -1;

    // Lives in a thread as long as the thread uses this object; leaving is the last that it does with it.
    // Under the mutex to the end, so that whoever waits may destroy the object at once.
    struct inside {
        ZebThread& thread;
        bool ZebThread::*flag;
        ~inside() {
            const std::lock_guard<std::mutex> lock(thread.inside_mutex_);
            thread.*flag = false;
            thread.left_.notify_all();
        }
    };

    // False where there is no memory for one.
    bool HasEvent() {
        if (ended_) return true;
        try {
            ended_.emplace();
        } catch (const std::bad_alloc&) {
            return false;
        }
        return true;
    }

    bool Create(pthread_t* created, void* (*entry)(void*), bool ZebThread::*flag) {
        SetInside(flag, true);
        if (pthread_create(created, nullptr, entry, this) == 0) return true;
        SetInside(flag, false);
        return false;
    }

    void SetInside(bool ZebThread::*flag, bool value) {
        const std::lock_guard<std::mutex> lock(inside_mutex_);
        this->*flag = value;
    }

    // What a join does, for a thread that could not be joined.
    void WaitUntilLeft(bool ZebThread::*flag) {
        std::unique_lock<std::mutex> lock(inside_mutex_);
        left_.wait(lock, [&] { return !(this->*flag); });
    }

    // The new thread's first steps: it registers itself, then runs the body.
    static void* WrappedEntry(void* self_pointer) {
        auto& self = *static_cast<ZebThread*>(self_pointer);
        const inside leaving{self, &ZebThread::body_inside_};
        {
            const ZebSyncGuard<ZebSync> guard(self.sync_);
            self.system_id_ = syscall(SYS_gettid);
            int priority = ZebThreadMng::GetPriority(self.system_id_);
            if (self.requested_priority_ != kNoPriority) {  // none of the library's threads asks for one
                ZebThreadMng::SetPriority(self.system_id_, self.requested_priority_);
                priority = self.requested_priority_;
            }
            ZebThreadMng::registerThreadInfo(self.handle_, self.name_, priority, self.value_);
        }
        return reinterpret_cast<void*>(self.Entry());
    }

    std::intptr_t Entry() {
        try {
            (*binding_)();
            return 0;
        } catch (const std::exception& error) {
            ZebDbgOutput::DbgPrint(kSource, "Entry", 431, 1, "catch exception. thread name [%s], what [%s]\n",
                                   name_, error.what());
            AssertFailed("Entry", 432);
        } catch (...) {
            // Not an exception of C++: the thread is being cancelled, or ends by pthread_exit. The C library
            // must see that unwinding through to its end.
            if (!std::current_exception()) throw;
            ZebDbgOutput::DbgPrint(kSource, "Entry", 436, 1, "catch exception. thread name [%s]\n", name_);
            AssertFailed("Entry", 437);
        }
        return -1;
    }

    static void* WaitEventTimeoutThread(void* self_pointer) {
        auto& self = *static_cast<ZebThread*>(self_pointer);
        const inside leaving{self, &ZebThread::watchdog_inside_};
        if (!self.ended_->Wait(self.timeout_)) {
            ZebDbgOutput::DbgPrint(kSource, "WaitEventTimeoutThread", 297, 1,
                                   "Error, ZebThread::WaitExit() timed out[%dms]. thread name[%s]\n",
                                   self.timeout_, self.name_);
            AssertFailed("WaitEventTimeoutThread", 298);
        }
        return nullptr;
    }

    static void AssertFailed(const char* function, int line) {
        ZebDbgOutput::DbgPrint(kSource, function, line, 1,
                               "#########\n#########\nASSERT Failed! - %s(%d)\n#########\n#########\n",
                               kSource, line);
        ZebCallStack::dumpDirectly(-1);
    }

    B* binding_;
    int value_;
    pthread_t handle_ = kNoThread;
    long system_id_ = -1;
    int requested_priority_ = kNoPriority;
    int timeout_ = 0;
    ZebSync sync_;
    std::optional<ZebEvent> ended_{std::in_place};  // set when the thread was joined
    std::mutex inside_mutex_;
    std::condition_variable left_;
    bool body_inside_ = false;      // each: created and not yet done with this object;
    bool watchdog_inside_ = false;  // guarded by inside_mutex_
    char name_[128] = {};
};

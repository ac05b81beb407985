#include "platform/zeb_shared_memory.h"

#include <sys/file.h>

#include <map>
#include <mutex>

#include "platform/never_destroyed.h"

namespace {

// The lock of a name: a lock file, held by flock (the kernel lets go of it when the process dies), and a
// depth count, since a lock file alone is not recursive.
struct held_lock {
    std::string path;
    int descriptor = -1;
    unsigned depth = 0;
};

struct lock_table {
    std::recursive_mutex mutex;  // held from lock() to unlock(): other threads of this process wait here
    std::map<std::string, held_lock> held;
    bool reported = false;  // that a lock file cannot be locked; until one can be again
};

// Never destroyed: a host may exit while another of its threads holds a lock.
lock_table& table() {
    static never_destroyed<lock_table> instance;
    return *instance;
}

// Beside the shared-memory objects themselves, so that whoever sees the object sees its lock.
std::string lock_path(const std::string& name) {
    return "/dev/shm/dabspi-" + name + ".lock";
}

// Not blocking: a pipe may stand at the name, and would keep whoever opens it waiting for its writer.
int open_lock_file(const std::string& path) {
    constexpr int kFlags = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    // First without O_CREAT: a sticky directory may refuse to open another user's file for creation.
    const int descriptor = open(path.c_str(), kFlags);
    return descriptor != -1 ? descriptor : open(path.c_str(), kFlags | O_CREAT, 0666);
}

bool lock_file(int descriptor) {
    int result = 0;
    do {
        result = flock(descriptor, LOCK_EX);
    } while (result == -1 && errno == EINTR);
    return result == 0;
}

// Whether the file that is locked is still the one that others find under its name: the one who lets go
// removes it. Where that cannot be found out, trying again would not end.
enum class lock_file_state { kInPlace, kGone, kUnknown };

lock_file_state state_of(int descriptor, const std::string& path) {
    struct stat locked {};
    struct stat named {};
    if (fstat(descriptor, &locked) != 0) return lock_file_state::kUnknown;
    if (stat(path.c_str(), &named) != 0)
        return errno == ENOENT ? lock_file_state::kGone : lock_file_state::kUnknown;
    const bool same = locked.st_ino == named.st_ino && locked.st_dev == named.st_dev;
    return same ? lock_file_state::kInPlace : lock_file_state::kGone;
}

// The descriptor of the lock file, or -1 and what the file "cannot be".
int take_lock_file(const std::string& path, const char*& cannot_be) {
    for (;;) {
        const int descriptor = open_lock_file(path);
        cannot_be = "opened";
        if (descriptor == -1) return -1;
        const bool locked = lock_file(descriptor);
        const lock_file_state state = locked ? state_of(descriptor, path) : lock_file_state::kUnknown;
        if (state == lock_file_state::kInPlace) return descriptor;
        close(descriptor);
        cannot_be = locked ? "looked at" : "locked";
        if (state == lock_file_state::kUnknown) return -1;
    }
}

// Without a lock file the library serves all the same. That is said once, not at each access.
int take_lock_file(const std::string& path, bool& reported) {
    const char* cannot_be = "";
    const int descriptor = take_lock_file(path, cannot_be);
    if (descriptor == -1 && !reported) {
        ZebDbgOutput::DbgPrint("ZebSharedSyncObject", "lock", 0, 1,
                               "%s cannot be %s; locked within this process only\n", path.c_str(), cannot_be);
    }
    reported = descriptor == -1;
    return descriptor;
}

}  // namespace

ZebSharedSyncObject::ZebSharedSyncObject(const char* name) : name_(name) {}
ZebSharedSyncObject::~ZebSharedSyncObject() = default;

void ZebSharedSyncObject::lock() const {
    lock_table& locks = table();
    locks.mutex.lock();
    try {
        auto held = locks.held.find(name_);
        if (held == locks.held.end()) {
            const std::string path = lock_path(name_);
            held = locks.held.emplace(name_, held_lock{path, -1, 0}).first;
            held->second.descriptor = take_lock_file(held->second.path, locks.reported);
        }
        ++held->second.depth;
    } catch (...) {
        locks.mutex.unlock();
        throw;
    }
}

// Allocates nothing: guards call it in their destructors.
void ZebSharedSyncObject::unlock() const {
    lock_table& locks = table();
    const auto entry = locks.held.find(name_);
    if (entry != locks.held.end() && --entry->second.depth == 0) {
        if (entry->second.descriptor != -1) {
            unlink(entry->second.path.c_str());  // nothing stays behind; a waiter sees that its file is gone
            close(entry->second.descriptor);
        }
        locks.held.erase(entry);
    }
    locks.mutex.unlock();
}

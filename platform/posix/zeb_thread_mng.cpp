#include "platform/zeb_thread.h"

#include <sys/resource.h>

#include <mutex>
#include <string>
#include <unordered_map>

#include "platform/never_destroyed.h"

namespace {

struct thread_info {
    std::string name;
    int priority;
    int value;
};

struct thread_table {
    std::mutex mutex;
    std::unordered_map<pthread_t, thread_info> threads;
};

// Never destroyed: a host may exit while a server lives, and its threads still end and unregister.
thread_table& table() {
    static never_destroyed<thread_table> instance;
    return *instance;
}

}  // namespace

int ZebThreadMng::GetPriority(long system_id) {
    if (system_id < 0) {
        ZebDbgOutput::DbgPrint("ZebThreadMng", "GetPriority", 356, 1, "invalid thread id\n");
        return 0;
    }
    return getpriority(PRIO_PROCESS, static_cast<id_t>(system_id));
}

void ZebThreadMng::SetPriority(long system_id, int priority) {
    setpriority(PRIO_PROCESS, static_cast<id_t>(system_id), priority);
}

void ZebThreadMng::registerThreadInfo(pthread_t handle, const char* name, int priority, int value) {
    try {
        const std::lock_guard<std::mutex> lock(table().mutex);
        table().threads[handle] = thread_info{name, priority, value};
    } catch (...) {
        // Out of memory. The table is for looking at; the thread serves without its entry.
    }
}

void ZebThreadMng::unregisterThreadInfo(pthread_t handle) {
    const std::lock_guard<std::mutex> lock(table().mutex);
    table().threads.erase(handle);
}

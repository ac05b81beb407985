#include "platform/zeb_debug.h"

#include <execinfo.h>
#include <unistd.h>

#include "platform/posix/zeb_posix.h"

void ZebCallStack::dumpDirectly(int depth) {
    void* frames[64];
    int count = backtrace(frames, 64);
    if (depth >= 0 && depth < count) count = depth;
    if (zeb_debug_sink() != nullptr) return;  // a sink collects messages; addresses say nothing to it
    backtrace_symbols_fd(frames, count, STDERR_FILENO);
}

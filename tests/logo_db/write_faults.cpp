#include "tests/logo_db/write_faults.h"

#include <fcntl.h>
#include <sys/types.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <mutex>
#include <set>

namespace {

struct {
    std::mutex mutex;
    write_faults::plan faults;
    std::set<int> open_files;  // for writing
    int opens = 0;
    int writes = 0;
    int last_flags = 0;
} state;

}  // namespace

namespace write_faults {

void set(const plan& faults) {
    const std::lock_guard<std::mutex> lock(state.mutex);
    state.faults = faults;
    state.opens = state.writes = state.last_flags = 0;
}
void reset() {
    set({});
}
int opens() {
    const std::lock_guard<std::mutex> lock(state.mutex);
    return state.opens;
}
int writes() {
    const std::lock_guard<std::mutex> lock(state.mutex);
    return state.writes;
}
int last_flags() {
    const std::lock_guard<std::mutex> lock(state.mutex);
    return state.last_flags;
}
int left_open() {
    const std::lock_guard<std::mutex> lock(state.mutex);
    return static_cast<int>(state.open_files.size());
}

}  // namespace write_faults

extern "C" {

int __real_open(const char* path, int flags, ...);
ssize_t __real_write(int descriptor, const void* bytes, std::size_t size);
int __real_close(int descriptor);

int __wrap_open(const char* path, int flags, ...) {
    mode_t mode = 0;
    if ((flags & O_CREAT) != 0) {
        std::va_list arguments;
        va_start(arguments, flags);
        mode = va_arg(arguments, mode_t);
        va_end(arguments);
    }
    if ((flags & O_ACCMODE) == O_RDONLY) return __real_open(path, flags, mode);
    const std::lock_guard<std::mutex> lock(state.mutex);
    ++state.opens;
    state.last_flags = flags;
    if (state.faults.open_error != 0) {
        errno = state.faults.open_error;
        return -1;
    }
    const int descriptor = __real_open(path, flags, mode);
    if (descriptor != -1) state.open_files.insert(descriptor);
    return descriptor;
}

ssize_t __wrap_write(int descriptor, const void* bytes, std::size_t size) {
    {
        const std::lock_guard<std::mutex> lock(state.mutex);
        if (state.open_files.count(descriptor) != 0) {
            ++state.writes;
            if (state.faults.write_error != 0) {
                errno = state.faults.write_error;
                return -1;
            }
            if (state.faults.write_only) size = std::min(size, *state.faults.write_only);
        }
    }
    return __real_write(descriptor, bytes, size);
}

int __wrap_close(int descriptor) {
    const std::lock_guard<std::mutex> lock(state.mutex);
    const bool written_to = state.open_files.erase(descriptor) != 0;
    const int result = __real_close(descriptor);
    if (!written_to || state.faults.close_error == 0) return result;
    errno = state.faults.close_error;
    return -1;
}

}  // extern "C"

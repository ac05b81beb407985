#include "testkit/sandbox.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <stdexcept>
#include <utility>

namespace {

std::atomic<sandbox*> current{nullptr};
std::atomic<int> block_descriptor{-1};
std::atomic<char*> block_address{nullptr};
constexpr std::size_t kBlock = 5140;

std::mutex calls_mutex;
std::vector<std::string> calls;  // guarded by calls_mutex

bool is_ours(const char* name) {
    for (const char* ours : {"/temp", "/dev/shm/dabspi-", "/HdStationLogo", "/mnt/data"})
        if (std::strncmp(name, ours, std::strlen(ours)) == 0) return true;
    return false;
}

bool noting() {
    const sandbox* const here = current;
    return here != nullptr && here->notes_calls;
}

void note(const std::string& call) {
    sandbox* const here = current;
    if (here->before_call) here->before_call(call);
    const std::lock_guard<std::mutex> lock(calls_mutex);
    calls.push_back(call);
}

// The name to use instead, after noting the call. Takes no memory from the heap: tests count that.
class redirected {
 public:
    redirected(const char* function, const char* name) : name_(name) {
        const sandbox* const here = current;
        if (here == nullptr || !is_ours(name)) return;
        if (noting()) note(std::string(function) + ' ' + name);
        std::snprintf(text_, sizeof text_, "%s%s", here->path().c_str(), name);
        name_ = text_;
    }
    redirected(const redirected&) = delete;
    redirected& operator=(const redirected&) = delete;
    const char* c_str() const { return name_; }

 private:
    const char* name_;
    char text_[8192];  // longer than any path that the system takes
};

int failed(int error) {
    errno = error;
    return -1;
}

int refused(const char* function, const char* name = nullptr) {
    const sandbox::refusal decide = sandbox::refuse;
    return decide == nullptr ? 0 : decide(function, name);
}

}  // namespace

std::atomic<sandbox::refusal> sandbox::refuse{nullptr};

sandbox::sandbox() {
    // The other one's end would let the library through to the system's own names.
    if (current != nullptr) throw std::logic_error("one sandbox at a time");
    std::filesystem::create_directories(at("/dev/shm"));
    std::filesystem::create_directories(at("/mnt"));
    take_calls();
    block_descriptor = -1;
    block_address = nullptr;
    current = this;
}

sandbox::~sandbox() {
    current = nullptr;
}

std::string sandbox::at(const std::string& name) const {
    return directory_.path().string() + name;
}

std::vector<std::string> sandbox::take_calls() {
    const std::lock_guard<std::mutex> lock(calls_mutex);
    return std::exchange(calls, {});
}

extern "C" {

int __real_open(const char*, int, ...);
int __real_shm_open(const char*, int, mode_t);
int __real_ftruncate(int, off_t);
void* __real_mmap(void*, std::size_t, int, int, int, off_t);
int __real_munmap(void*, std::size_t);
int __real_fstat(int, struct stat*);
int __real_stat(const char*, struct stat*);
int __real_mkdir(const char*, mode_t);
DIR* __real_opendir(const char*);
int __real_unlink(const char*);
int __real_flock(int, int);
std::size_t __real_strnlen(const char*, std::size_t);

int __wrap_shm_open(const char* name, int flags, mode_t mode) {
    if (const int error = refused("shm_open", name)) return failed(error);
    const sandbox* const here = current;
    if (here == nullptr) return __real_shm_open(name, flags, mode);
    const bool exclusive = (flags & O_EXCL) != 0;
    const bool expected = (flags & ~O_EXCL) == (O_RDWR | O_CREAT) && mode == 0664;
    if (noting())
        note(std::string("shm_open ") + name + (exclusive ? " exclusive" : "") +
             (expected ? "" : " ODD FLAGS"));
    if (exclusive && here->faults.exclusive_shm_open != 0) return failed(here->faults.exclusive_shm_open);
    if (!exclusive && here->faults.second_shm_open != 0) return failed(here->faults.second_shm_open);
    const int descriptor = __real_open(here->block_file(), flags | O_CLOEXEC | O_NOFOLLOW, mode);
    block_descriptor = descriptor;
    return descriptor;
}

int __wrap_ftruncate(int descriptor, off_t size) {
    if (const int error = refused("ftruncate")) return failed(error);
    const sandbox* const here = current;
    if (here == nullptr) return __real_ftruncate(descriptor, size);
    if (noting()) note("ftruncate " + std::to_string(size));
    if (here->faults.ftruncate != 0) return failed(here->faults.ftruncate);
    return __real_ftruncate(descriptor, size);
}

void* __wrap_mmap(void* address, std::size_t size, int protection, int flags, int descriptor, off_t offset) {
    if (const int error = refused("mmap")) {
        errno = error;
        return MAP_FAILED;
    }
    const sandbox* const here = current;
    if (here == nullptr) return __real_mmap(address, size, protection, flags, descriptor, offset);
    const bool expected = protection == (PROT_READ | PROT_WRITE) && flags == MAP_SHARED && offset == 0;
    if (noting()) note("mmap " + std::to_string(size) + (expected ? "" : " ODD FLAGS"));
    if (here->faults.mmap != 0) {
        errno = here->faults.mmap;
        return MAP_FAILED;
    }
    void* const mapped = __real_mmap(address, size, protection, flags, descriptor, offset);
    if (mapped != MAP_FAILED) block_address = static_cast<char*>(mapped);
    return mapped;
}

int __wrap_munmap(void* address, std::size_t size) {
    if (current != nullptr) {
        if (noting()) note("munmap " + std::to_string(size) + (address == block_address ? "" : " ELSEWHERE"));
        block_address = nullptr;
    }
    const int error = refused("munmap");
    const int result = __real_munmap(address, size);  // even when refused: nobody could ask for it again
    return error == 0 ? result : failed(error);
}

int __wrap_fstat(int descriptor, struct stat* status) {
    if (const int error = refused("fstat")) return failed(error);
    const sandbox* const here = current;
    if (here != nullptr && descriptor == block_descriptor && here->faults.fstat != 0)
        return failed(here->faults.fstat);
    return __real_fstat(descriptor, status);
}

int __wrap_stat(const char* name, struct stat* status) {
    if (const int error = refused("stat", name)) return failed(error);
    return __real_stat(redirected("stat", name).c_str(), status);
}

int __wrap_mkdir(const char* name, mode_t mode) {
    if (const int error = refused("mkdir", name)) return failed(error);
    const redirected instead("mkdir", name);
    const sandbox* const here = current;
    if (here != nullptr) {
        const auto& refused = here->faults.mkdir_refused;
        if (std::find(refused.begin(), refused.end(), name) != refused.end()) return failed(EACCES);
    }
    return __real_mkdir(instead.c_str(), mode);
}

int __wrap_open(const char* name, int flags, ...) {
    if (const int error = refused("open", name)) return failed(error);
    mode_t mode = 0;
    if ((flags & O_CREAT) != 0) {
        std::va_list arguments;
        va_start(arguments, flags);
        mode = va_arg(arguments, mode_t);
        va_end(arguments);
    }
    return __real_open(redirected("open", name).c_str(), flags, mode);
}

DIR* __wrap_opendir(const char* name) {
    if (const int error = refused("opendir", name)) {
        errno = error;
        return nullptr;
    }
    return __real_opendir(redirected("opendir", name).c_str());
}

int __wrap_unlink(const char* name) {
    if (const int error = refused("unlink", name)) return failed(error);
    return __real_unlink(redirected("unlink", name).c_str());
}

int __wrap_flock(int descriptor, int operation) {
    if (const int error = refused("flock")) return failed(error);
    if (noting()) note(operation == LOCK_EX ? "flock exclusive" : "flock " + std::to_string(operation));
    return __real_flock(descriptor, operation);
}

std::size_t __wrap_strnlen(const char* text, std::size_t limit) {
    const char* const block = block_address;
    if (block != nullptr && text >= block && text < block + kBlock && noting()) note("read the path");
    return __real_strnlen(text, limit);
}

}  // extern "C"

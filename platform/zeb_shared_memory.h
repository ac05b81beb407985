// Named shared memory of the host's platform framework: the cross-process lock `ZebSharedSyncObject` (defined
// by the host) and the template `ZebSharedMemory`, which is compiled into the library.
//
// The line numbers in the messages are constants: a receiver's log is read by them.
#pragma once

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "platform/zeb_debug.h"
#include "platform/zeb_sync.h"

// A lock with a name, shared by every process of the system and recursive within one. It must die with its
// process: whoever is killed while holding it does not lock the others out.
class ZebSharedSyncObject {
 public:
    explicit ZebSharedSyncObject(const char* name);
    virtual ~ZebSharedSyncObject();
    ZebSharedSyncObject(const ZebSharedSyncObject&) = delete;
    ZebSharedSyncObject& operator=(const ZebSharedSyncObject&) = delete;

    virtual void lock() const;
    virtual void unlock() const;

 private:
    std::string name_;
};

// A view of the shared-memory object "/" + `name`: a 32-bit size word, always sizeof(T), followed by one T. T
// is plain data. `N` is the framework's own parameter; it does not change what is done here.
//
// Opened by the constructor, under the object's own lock, and closed by the destructor; the object itself
// stays. What fails is printed, and leaves the view unmapped: payload() is then null.
template <class T, int N>
class ZebSharedMemory : public ZebSharedSyncObject {
 public:
    explicit ZebSharedMemory(const char* name) : ZebSharedSyncObject(name) {
        const ZebSyncGuard<ZebSharedSyncObject> guard(*this);
        const std::string path = std::string("/") + name;
        if (!Open(path.c_str())) return;
        if (!Map()) return;
        const auto size = static_cast<std::uint32_t>(sizeof(T));
        std::memcpy(address_, &size, sizeof size);  // also over what another process may have written there
        if (created_) {
            // The lock is taken a second time: it is recursive.
            const ZebSyncGuard<ZebSharedSyncObject> nested(*this);
            std::memset(static_cast<char*>(address_) + sizeof size, 0, sizeof(T));
        }
    }
    ~ZebSharedMemory() override {
        if (address_ != MAP_FAILED) munmap(address_, kBytes);
        if (descriptor_ != -1) close(descriptor_);
    }

    // The shared T, or null while unmapped. Only to be touched under the lock.
    const T* payload() const {
        if (address_ == MAP_FAILED) return nullptr;
        return reinterpret_cast<const T*>(static_cast<const char*>(address_) + sizeof(std::uint32_t));
    }

 private:
    static constexpr const char* kSource = "ZebSharedMemory";
    static constexpr const char* kFunction = "ZebSharedMemory";
    static constexpr std::size_t kBytes = sizeof(std::uint32_t) + sizeof(T);

    bool Open(const char* path) {
        descriptor_ = shm_open(path, O_RDWR | O_CREAT | O_EXCL, 0664);
        if (descriptor_ != -1) {
            created_ = true;
            if (ftruncate(descriptor_, static_cast<off_t>(kBytes)) != 0) {
                // Reported only: the mapping below shows whether the object can be used.
                ZebDbgOutput::DbgPrintStdErr(kSource, kFunction, 135, "ftruncate error\n");
            }
            return true;
        }
        if (errno != EEXIST) {
            ZebDbgOutput::DbgPrintStdErr(kSource, kFunction, 122, "shm_open error\n");
            return false;
        }
        // Not checked here: a descriptor that could not be opened shows up at the mapping.
        descriptor_ = shm_open(path, O_RDWR | O_CREAT, 0664);
        return true;
    }

    bool Map() {
        void* const mapped = mmap(nullptr, kBytes, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor_, 0);
        if (mapped != MAP_FAILED && HoldsWholeBlock()) {
            address_ = mapped;
            return true;
        }
        if (mapped != MAP_FAILED) munmap(mapped, kBytes);
        ZebDbgOutput::DbgPrintStdErr(kSource, kFunction, 151, "mmap error\n");
        return false;
    }

    // An object that another process left empty or half-made maps all the same, and the first touch behind
    // its end would be a SIGBUS. It is not ours to grow: it counts as not mapped.
    bool HoldsWholeBlock() const {
        struct stat status {};
        return fstat(descriptor_, &status) == 0 && status.st_size >= static_cast<off_t>(kBytes);
    }

    int descriptor_ = -1;         // -1 while closed
    void* address_ = MAP_FAILED;  // all ones while unmapped
    bool created_ = false;        // this process made the object
};

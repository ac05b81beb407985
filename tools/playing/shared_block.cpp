#include "tools/playing/shared_block.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <system_error>

namespace dabspi {

namespace {

constexpr std::uint32_t kPayloadBytes = 5136;
constexpr std::size_t kBlockBytes = sizeof kPayloadBytes + kPayloadBytes;

std::runtime_error failure(const std::string& block, const std::string& what, int error) {
    return std::runtime_error("the shared data block " + block + " " + what + ": " +
                              std::generic_category().message(error) + "; --api core does without it");
}

}  // namespace

temporary_storage_path::temporary_storage_path(const std::string& path, const std::string& block)
    : name_("/" + block), lock_(block.c_str()) {
    if (path.size() >= kPayloadBytes) {
        throw std::runtime_error("the storage path is " + std::to_string(path.size()) +
                                 " bytes long; the shared data block holds at most " +
                                 std::to_string(kPayloadBytes - 1));
    }
    std::vector<char> content(sizeof kPayloadBytes + path.size() + 1);
    std::memcpy(content.data(), &kPayloadBytes, sizeof kPayloadBytes);
    std::memcpy(content.data() + sizeof kPayloadBytes, path.c_str(), path.size() + 1);

    lock_.lock();
    try {
        open();
        write(content);
    } catch (...) {
        restore();
        lock_.unlock();
        throw;
    }
}

temporary_storage_path::~temporary_storage_path() {
    restore();
    lock_.unlock();
}

void temporary_storage_path::open() {
    descriptor_ = ::shm_open(name_.c_str(), O_RDWR, 0);
    if (descriptor_ != -1) {
        struct stat status {};
        if (::fstat(descriptor_, &status) != 0) throw failure(name_, "cannot be examined", errno);
        if (status.st_size < static_cast<off_t>(kBlockBytes)) {
            // Somebody else's, and not ours to grow; the library would refuse to start with it.
            throw std::runtime_error("the shared data block " + name_ + " is " +
                                     std::to_string(status.st_size) + " bytes long, not " +
                                     std::to_string(kBlockBytes) + ": remove /dev/shm" + name_ +
                                     " if no program uses it, or use --api core");
        }
        return;
    }
    if (errno != ENOENT) throw failure(name_, "cannot be opened", errno);
    descriptor_ = ::shm_open(name_.c_str(), O_RDWR | O_CREAT | O_EXCL, 0664);
    if (descriptor_ == -1) throw failure(name_, "cannot be created", errno);
    created_ = true;
    if (::ftruncate(descriptor_, static_cast<off_t>(kBlockBytes)) != 0)
        throw failure(name_, "cannot be made long enough", errno);
}

// pread and pwrite, not a mapping: on a full file system a write fails, where a mapping would end in SIGBUS.
void temporary_storage_path::write(const std::vector<char>& content) {
    const auto size = static_cast<ssize_t>(content.size());
    if (!created_) {
        std::vector<char> before(content.size());
        if (::pread(descriptor_, before.data(), before.size(), 0) != size)
            throw failure(name_, "cannot be read", errno);
        before_ = std::move(before);
    }
    errno = ENOSPC;  // a short write without an error
    if (::pwrite(descriptor_, content.data(), content.size(), 0) != size)
        throw failure(name_, "cannot be written", errno);
}

void temporary_storage_path::restore() noexcept {
    if (descriptor_ == -1) return;
    if (created_) {
        ::shm_unlink(name_.c_str());
    } else if (!before_.empty()) {
        // The same bytes of the same object were written before: there is room for them.
        [[maybe_unused]] const ssize_t written = ::pwrite(descriptor_, before_.data(), before_.size(), 0);
    }
    ::close(descriptor_);
    descriptor_ = -1;
}

}  // namespace dabspi

// Lends the system's shared data block a storage path while the library starts.
//
// The block is the shared-memory object "/SysDataInfo", 5140 bytes, which other programs of the system share:
// a 32-bit size word, always 5136, then a text that ends in NUL, the storage path. The host-facing layer of
// the library reads it in its constructor.
#pragma once

#include <string>
#include <vector>

#include "platform/zeb_shared_memory.h"

namespace dabspi {

constexpr const char* kSystemBlock = "SysDataInfo";

// While it stands it holds the block's named lock, so that programs that keep to the lock never see the
// temporary path. The destructor, on the same thread, restores the block exactly: its bytes, or its absence.
// Other members of the block are never touched.
class temporary_storage_path {
 public:
    // Throws std::runtime_error with a text for the user when the path is too long, when a block is there
    // that is not one, or when it cannot be opened or written; everything is then as it was before.
    explicit temporary_storage_path(const std::string& path, const std::string& block = kSystemBlock);
    ~temporary_storage_path();
    temporary_storage_path(const temporary_storage_path&) = delete;
    temporary_storage_path& operator=(const temporary_storage_path&) = delete;

 private:
    void open();
    void write(const std::vector<char>& content);
    void restore() noexcept;

    std::string name_;  // with the leading "/"
    ZebSharedSyncObject lock_;
    int descriptor_ = -1;
    bool created_ = false;
    std::vector<char> before_;  // what stood where the path is now; empty if the block was created here
};

}  // namespace dabspi

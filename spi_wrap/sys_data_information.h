// The system's shared data block: the shared-memory object "/SysDataInfo", 5140 bytes, which other programs
// share and write. The library reads the storage path from it, once, while it starts.
#pragma once

#include <string>

#include "platform/zeb_shared_memory.h"

namespace spi_wrap {

// What stands behind the block's size word. Only the storage path at its beginning is of interest here; the
// length of that text and everything behind it belong to the other users of the block.
struct SysDataInfoStruct {
    char storage_path[5136];
};
static_assert(sizeof(SysDataInfoStruct) == 5136, "the block's size is fixed");

// A short-lived view of the block, opened and closed with the object.
class SysDataInformation : private ZebSharedMemory<SysDataInfoStruct, 1> {
 public:
    SysDataInformation();

    // The text up to its NUL, or the whole payload where it lacks one. Throws std::logic_error when the block
    // could not be mapped: there is deliberately no default path.
    std::string storage_path() const;
};

}  // namespace spi_wrap

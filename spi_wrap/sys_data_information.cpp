#include "spi_wrap/sys_data_information.h"

#include <cstring>
#include <stdexcept>

namespace spi_wrap {

SysDataInformation::SysDataInformation() : ZebSharedMemory<SysDataInfoStruct, 1>("SysDataInfo") {}

std::string SysDataInformation::storage_path() const {
    const ZebSyncGuard<ZebSharedSyncObject> guard(*this);
    const SysDataInfoStruct* const block = payload();
    if (block == nullptr)
        throw std::logic_error(
            "basic_string: construction from null is not valid: the shared data block /SysDataInfo cannot be "
            "mapped; "
            "mount a tmpfs on /dev/shm that this program may write to, and remove /dev/shm/SysDataInfo if it "
            "is "
            "there and shorter than 5140 bytes");
    return std::string(block->storage_path, strnlen(block->storage_path, sizeof block->storage_path));
}

}  // namespace spi_wrap

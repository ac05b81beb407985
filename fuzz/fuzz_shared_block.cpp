// A shared data block of any size and contents, as another process may have left it: the storage path is the
// text up to its NUL or the payload's end, and a block that is too short is refused.
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

#include "fuzz/fuzz_support.h"
#include "platform/posix/zeb_posix.h"
#include "spi_wrap/sys_data_information.h"

namespace {
int block = -1;
}

extern "C" int __wrap_shm_open(const char*, int flags, mode_t) {
    if ((flags & O_EXCL) == 0) return dup(block);
    errno = EEXIST;
    return -1;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool silent = (zeb_set_debug_sink([](const ZebDebugMessage&) {}), true);
    static_cast<void>(silent);
    if (block == -1) block = memfd_create("block", MFD_CLOEXEC);
    if (size < 1) return 0;
    // The first byte stretches the block: most inputs would never reach its full size.
    const auto length = static_cast<off_t>(size - 1) + (data[0] & 1 ? 5140 : 0) + data[0] % 7;
    expect(ftruncate(block, 0) == 0 && ftruncate(block, length) == 0, "the block can be made");
    expect(pwrite(block, data + 1, size - 1, 0) == static_cast<ssize_t>(size - 1), "and written");

    std::string payload(5136, '\0');
    const std::size_t present = std::min<std::size_t>(size - 1, 5140);
    if (present > 4) std::memcpy(&payload[0], data + 5, present - 4);
    bool refused = false;
    try {
        const spi_wrap::SysDataInformation view;
        expect(view.storage_path() == payload.substr(0, payload.find('\0')),
               "the path ends at its NUL or the payload's end");
    } catch (const std::logic_error&) {
        refused = true;
    }
    expect(refused == (length < 5140), "only short blocks are refused");
    return 0;
}

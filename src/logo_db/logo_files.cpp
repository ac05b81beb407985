#include "src/logo_db/logo_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>

#include "platform/zeb_debug.h"
#include "platform/zeb_file_sys.h"

namespace spi {
namespace {

// One write, so that a body is either in the file or the logo has failed: a buffered stream would report
// success for a small body on a full disk.
bool write_once(int descriptor, const MotBody& body) {
    struct stat status {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) return false;
    const ssize_t written = write(descriptor, body.data.get(), body.size);
    return written >= 0 && static_cast<std::uint64_t>(written) == body.size;
}

}  // namespace

bool write_logo_file(const std::string& path, const MotBody& body) {
    const int descriptor =
        open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0666);
    if (descriptor == -1) return false;
    const bool written = write_once(descriptor, body);
    // Some file systems report only here that there was no room.
    const bool closed = close(descriptor) == 0;
    return written && closed;
}

bool is_logo_directory(const std::string& directory, const char* function, int line) {
    if (ZebFileSys::IsExist(directory)) return true;
    ZebDbgOutput::DbgPrint("src/logo_db", function, line, 1, "Failed: Station Logo path:[%s]\n",
                           directory.c_str());
    return false;
}

bool has_logo_file(const std::string& pattern) {
    ZebFileSys search;
    std::string name;
    return search.FindFirst(pattern, name);
}

void delete_logo_files(const std::string& directory, const std::string& name_pattern) {
    ZebFileSys search;
    std::string name;
    for (bool found = search.FindFirst(directory + name_pattern, name); found;
         found = search.FindNext(name)) {
        ZebFileSys::Delete(directory + name, true);
    }
}

}  // namespace spi

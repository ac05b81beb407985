#include "src/logo_db/logo_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <ios>
#include <locale>
#include <sstream>

#include "platform/zeb_debug.h"
#include "platform/zeb_file_sys.h"
#include "src/logo_db/spi_logo_db.h"

namespace spi {
namespace {

// The line numbers are constants: a receiver's log is read by them.
void report_missing_directory(const char* function, int line, const std::string& directory) {
    ZebDbgOutput::DbgPrint("src/logo_db", function, line, 1, "Failed: Station Logo path:[%s]\n",
                           directory.c_str());
}

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

std::string station_prefix(int ecc, int sid, int scids) {
    const unsigned packed = (static_cast<unsigned>(ecc) & 0xFF) << 20 |
                            (static_cast<unsigned>(sid) & 0xFFFF) << 4 | (static_cast<unsigned>(scids) & 0xF);
    std::string prefix = SpiLogoDb::toString(packed);
    for (char& c : prefix) {
        if (c >= 'a' && c <= 'f') c = static_cast<char>(c - 'a' + 'A');
    }
    return prefix;
}

std::string SpiLogoDb::toString(unsigned value) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << std::hex << value;
    return text.str();
}

bool SpiLogoDb::isFindLargeSizeLogo(int ecc, int sid, int scids, const std::string& root) {
    const std::string directory = root + "/";
    if (!ZebFileSys::IsExist(directory)) {
        report_missing_directory("isFindLargeSizeLogo", 164, directory);
        return false;
    }
    ZebFileSys search;
    std::string name;
    return search.FindFirst(directory + station_prefix(ecc, sid, scids) + "_4.*", name);
}

bool SpiLogoDb::deleteCorruptedFile(int ecc, int sid, int scids, int size_code, const std::string& root) {
    const std::string directory = root + "/";
    if (!ZebFileSys::IsExist(directory)) {
        report_missing_directory("deleteCorruptedFile", 204, directory);
        return false;
    }
    // "*" and not ".*": every file of the station whose name goes on from the size code, of any format.
    const std::string pattern =
        directory + station_prefix(ecc, sid, scids) + "_" + toString(static_cast<unsigned>(size_code)) + "*";
    ZebFileSys search;
    std::string name;
    for (bool found = search.FindFirst(pattern, name); found; found = search.FindNext(name)) {
        ZebFileSys::Delete(directory + name, true);
    }
    return true;
}

}  // namespace spi

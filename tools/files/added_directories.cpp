#include "tools/files/added_directories.h"

#include <sys/stat.h>
#include <unistd.h>

namespace dabspi {

added_directories::added_directories(const std::vector<std::string>& paths) {
    for (const std::string& path : paths) {
        struct stat status {};
        if (::lstat(path.c_str(), &status) != 0) missing_.push_back(path);
    }
}

void added_directories::remove() noexcept {
    for (; !missing_.empty(); missing_.pop_back())
        ::rmdir(missing_.back().c_str());
}

}  // namespace dabspi

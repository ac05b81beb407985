#include "tools/files/created_directories.h"

#include <sys/stat.h>
#include <unistd.h>

namespace dabspi {

created_directories::created_directories(const std::vector<std::string>& paths) {
    for (const std::string& path : paths) {
        struct stat status {};
        if (::lstat(path.c_str(), &status) != 0) missing_.push_back(path);
    }
}

void created_directories::remove() noexcept {
    for (; !missing_.empty(); missing_.pop_back())
        ::rmdir(missing_.back().c_str());
}

}  // namespace dabspi

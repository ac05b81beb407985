#include "platform/zeb_file_sys.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>

namespace {

// "*" stands for any run of characters, "?" for any one; linear in pattern times name, never recursive.
bool matches(const std::string& pattern, const std::string& name) {
    std::size_t p = 0;
    std::size_t n = 0;
    std::size_t star = std::string::npos;
    std::size_t resume = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            resume = n;
        } else if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == name[n])) {
            ++p;
            ++n;
        } else if (star != std::string::npos) {
            p = star + 1;
            n = ++resume;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*')
        ++p;
    return p == pattern.size();
}

bool is_directory(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool make_directory(const std::string& path) {
    // Another process may have made it in the meantime: it is there, and that is what was asked for.
    return mkdir(path.c_str(), 0777) == 0 || is_directory(path);
}

struct close_directory {
    void operator()(DIR* directory) const { closedir(directory); }
};

}  // namespace

bool ZebFileSys::IsExist(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0;
}

bool ZebFileSys::CreateDirectory(const std::string& path, bool parents) {
    if (parents) {
        for (std::size_t end = path.find('/', 1); end != std::string::npos; end = path.find('/', end + 1)) {
            if (!make_directory(path.substr(0, end))) return false;
        }
    }
    return make_directory(path);
}

bool ZebFileSys::Delete(const std::string& path, bool) {
    return unlink(path.c_str()) == 0;
}

bool ZebFileSys::FindFirst(const std::string& pattern, std::string& name) {
    found_.clear();
    next_ = 0;
    const std::size_t slash = pattern.rfind('/');
    const std::string directory = slash == std::string::npos ? "." : pattern.substr(0, slash + 1);
    const std::string last = slash == std::string::npos ? pattern : pattern.substr(slash + 1);
    const std::unique_ptr<DIR, close_directory> listing(opendir(directory.c_str()));
    if (!listing) return false;
    while (const dirent* const entry = readdir(listing.get())) {
        const std::string candidate = entry->d_name;
        if (candidate != "." && candidate != ".." && matches(last, candidate)) found_.push_back(candidate);
    }
    return FindNext(name);
}

bool ZebFileSys::FindNext(std::string& name) {
    if (next_ >= found_.size()) return false;
    name = found_[next_++];
    return true;
}

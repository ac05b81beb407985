// File-system operations of the host's platform framework.
//
// The meaning of the flags is an assumption of this library about its host: CreateDirectory's `parents` asks
// for missing parent directories too; Delete's `force` has no meaning on POSIX systems.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

class ZebFileSys {
 public:
    // True when anything stands at `path` (links are followed).
    static bool IsExist(const std::string& path);
    static bool CreateDirectory(const std::string& path, bool parents);
    static bool Delete(const std::string& path, bool force);

    // Directory search. `pattern` is a path whose last component may hold "*" and "?"; every other character,
    // and the whole directory before it, stands for itself. FindFirst reads the directory once and gives the
    // first match in `name` (without directory), FindNext the following ones; both return false when there is
    // none (left). What is deleted while a search goes on does not disturb it.
    bool FindFirst(const std::string& pattern, std::string& name);
    bool FindNext(std::string& name);

 private:
    std::vector<std::string> found_;
    std::size_t next_ = 0;
};

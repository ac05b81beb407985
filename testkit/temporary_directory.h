// A fresh directory of a test's own, removed with everything in it at the end.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

class temporary_directory {
 public:
    temporary_directory() {
        std::string name = (std::filesystem::temp_directory_path() / "dabspi-test-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary directory: " + name);
        path_ = name;
    }
    ~temporary_directory() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    temporary_directory(const temporary_directory&) = delete;
    temporary_directory& operator=(const temporary_directory&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::string operator/(const std::string& name) const { return (path_ / name).string(); }

 private:
    std::filesystem::path path_;
};

// A fresh directory for one test, removed with all its content when the test ends.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

namespace dabspi_test {

class temporary_directory {
 public:
    temporary_directory() {
        std::string pattern = (std::filesystem::temp_directory_path() / "dabspi-test-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr)
            throw std::system_error(errno, std::generic_category(), pattern);
        path_ = std::filesystem::canonical(pattern);
    }
    temporary_directory(const temporary_directory&) = delete;
    temporary_directory& operator=(const temporary_directory&) = delete;
    ~temporary_directory() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    const std::filesystem::path& path() const { return path_; }

    // Writes a file, making its directories, and returns its full name.
    std::string write(const std::string& name, const std::string& content) const {
        const std::filesystem::path file = path_ / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << content;
        return file.string();
    }

    bool empty() const { return std::filesystem::is_empty(path_); }

 private:
    std::filesystem::path path_;
};

}  // namespace dabspi_test

// The files that the generator makes, by their path relative to the output directory, held in memory until
// all of them exist: they are then either written or compared with what a directory holds. Errors of the file
// system throw std::runtime_error with the file's name.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "testkit/spi_builder.h"

namespace generator {

class file_set {
 public:
    // Adding a path twice throws std::logic_error, unless the bytes are the same (recordings may share an
    // object).
    void add(const std::string& path, std::string_view text);
    void add(const std::string& path, const spi_builder::bytes& content);

    std::size_t count() const { return files_.size(); }
    std::size_t total_bytes() const;

    // Writes every file below `directory`, making directories as needed; other files there are left alone.
    void write(const std::filesystem::path& directory) const;

    // One line for each file that is missing or differs. Other files there are not looked at.
    std::vector<std::string> differences(const std::filesystem::path& directory) const;

 private:
    std::map<std::string, std::string> files_;
};

}  // namespace generator

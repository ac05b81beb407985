// Small files of one test, in its temporary directory.
#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "testkit/temporary_directory.h"

// Writes a file, making its directories, and returns its name.
inline std::string write_file(const temporary_directory& in, const std::string& name,
                              const std::string& content) {
    const std::filesystem::path file = in.path() / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
    return file.string();
}

inline std::string read_file(const std::string& name) {
    std::ostringstream content;
    content << std::ifstream(name, std::ios::binary).rdbuf();
    return content.str();
}

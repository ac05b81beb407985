// Files read and written as a whole.
#pragma once

#include <optional>
#include <string>

namespace dabspi {

// "-" is standard input. Nothing, and `error` filled ("cannot be read: No such file or directory"), when it
// cannot be read.
std::optional<std::string> read_whole_file(const std::string& path, std::string& error);

// Makes the directories above it. What stood there before is replaced in one step: nobody ever sees half a
// file, and when it fails (std::runtime_error with a text for the user) the old one is still there.
void write_whole_file(const std::string& path, const std::string& content);

}  // namespace dabspi

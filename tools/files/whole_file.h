// Files read and written as a whole.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace dabspi {

// "-" is standard input. Nothing, and `error` filled ("cannot be read: No such file or directory"), when it
// cannot be read, or holds more than `most_bytes`: a pipe or a device may have no end.
constexpr std::size_t kMostOfFile = std::size_t{256} << 20;
std::optional<std::string> read_whole_file(const std::string& path, std::string& error,
                                           std::size_t most_bytes = kMostOfFile);

// Makes the directories above it. What stood there before is replaced in one step: nobody ever sees half a
// file, and when it fails (std::runtime_error with a text for the user) the old one is still there.
void write_whole_file(const std::string& path, const std::string& content);

}  // namespace dabspi

// Files read and written as a whole.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace dabspi {

// "-" is standard input. Nothing, and `error` filled ("cannot be read: No such file or directory"), when it
// cannot be read.
std::optional<std::string> read_whole_file(const std::string& path, std::string& error);

// Replaces what stood there in one step: nobody ever sees half a file, and when it fails the old one is still
// there, as it was. A file that stood there passes its permissions on. Of two that write at once the later
// wins, whole. Only regular files are replaced: a link, a directory, a pipe or a device at the name is an
// error, and nothing waits for it. The error's text, or an empty one.
std::string write_whole_file(const std::string& path, std::string_view content);

// The same, and makes the directories above it. Throws std::runtime_error with a text for the user.
void write_whole_file_and_folders(const std::string& path, std::string_view content);

// For options: the error's text for the name of a folder to write into, or an empty one. An empty name would
// be the root directory when a file's name is put behind it.
std::string refuse_empty_folder(const std::string& folder);

}  // namespace dabspi

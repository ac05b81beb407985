// Files in the logo root: writing one, finding and deleting them. The one place of the logo unit that touches
// the disk and the platform's framework. Logo worker's thread only.
#pragma once

#include <string>

#include "src/parse/mot_body.h"

namespace spi {

// True when every byte of the body is in the file. Only regular files are written to: a link, pipe or device
// that stands at the path counts as a file that cannot be opened.
bool write_logo_file(const std::string& path, const MotBody& body);

// False for a missing directory, which is reported on the debug channel as of `function` and `line`.
bool is_logo_directory(const std::string& directory, const char* function, int line);

// `pattern` is a directory, then a file name with "*" and "?".
bool has_logo_file(const std::string& pattern);
// Deletes all files of `directory` whose names match.
void delete_logo_files(const std::string& directory, const std::string& name_pattern);

}  // namespace spi

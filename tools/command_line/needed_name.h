// For options that take the name of a file or folder.
#pragma once

#include <string>

namespace dabspi {

// An empty one is a mistake of a script, such as a variable that is not set; it would mean the current or the
// root directory.
inline std::string a_name_is_needed(const std::string& text) {
    return text.empty() ? "a name is needed, and it is empty" : "";
}

}  // namespace dabspi

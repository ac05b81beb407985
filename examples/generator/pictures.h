// The logos of the invented stations. No station or picture here belongs to anybody.
#pragma once

#include "examples/generator/file_set.h"

namespace generator {

// Adds all of them under objects/: "quillhaven-128x128.png".
void add_pictures(file_set& files);

}  // namespace generator

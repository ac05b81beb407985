// Recordings of objects that no encoder makes: cut short, with tokens that mean nothing, with names that are
// no text. All other recordings are made by plans (examples/recordings/sources).
//
// The notifications that each recording must give stand beside it, in NAME.core.expected and
// NAME.wrapper.expected. They are written by hand from the rules that the recording's comments state, never
// by this program.
#pragma once

#include "examples/generator/file_set.h"

namespace generator {

void add_malformed_scenes(file_set& files);

}  // namespace generator

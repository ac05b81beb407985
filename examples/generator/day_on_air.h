// The long recording: a receiver's day, from early morning through midnight into the next one.
#pragma once

#include "examples/generator/file_set.h"

namespace generator {

// Adds day-on-air.jsonl and the objects that it feeds.
void add_day_on_air(file_set& files);

}  // namespace generator

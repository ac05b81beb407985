// What to tell a user of an opened multiplex, in words. Pure functions; texts are printable, without the
// input's name.
#pragma once

#include <string>

#include "tools/air/container/open_frames.h"

namespace dabspi::air {

// After reading: why no frame came out; empty if one did. `flow` is what was chosen.
std::string why_no_frame(const opened_frames& in, const std::string& flow);

// Of a capture with several flows where none was chosen: which are there, and which was read.
std::string flows_to_choose_from(const opened_frames& in, const std::string& flow);

// After reading: why the input ended early; empty if it did not.
std::string early_end(const opened_frames& in);

}  // namespace dabspi::air

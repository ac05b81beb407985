// Opens what calls can be taken from, recognised by its content: a multiplex, or a call recording. Standard
// input and pipes are read once, as they come.
#pragma once

#include <string>

#include "tools/air/container/open_frames.h"
#include "tools/recording/recording.h"

namespace dabspi::air {

// What an input holds that is no multiplex, from its beginning. `in` must outlive it.
recording_text text_of(opened_frames& in);

// A multiplex by its content, also one that cannot be opened.
bool is_multiplex_kind(content_kind kind);

struct opened_calls {
    opened_frames multiplex;  // null `frames`: it is none
    recording recorded;       // what there is then, or the errors
    std::string error;        // a multiplex that cannot be opened: with its name, for the user
    bool is_multiplex() const { return multiplex.frames != nullptr; }
};

// `path` "-" is standard input. A multiplex is opened, a recording is read. What is none of both has an error
// in `recorded` that says what it is.
opened_calls open_calls(const std::string& path, const open_options& options = {},
                        const recording_limits& limits = {});

}  // namespace dabspi::air

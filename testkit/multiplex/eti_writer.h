// ETI(NI) recordings (ETS 300 799) of logical frames: raw, streamed and framed.
#pragma once

#include <vector>

#include "testkit/multiplex/logical_frame.h"

namespace multiplex_builder {

// What an encoder may leave out or get wrong.
struct eti_options {
    bool header_crc = true;  // false: zero
    bool body_crc = true;    // false: zero
    bool length = true;      // false: a frame length of zero
};

// One frame, from ERR to TIST; `odd` chooses the synchronisation word.
bytes eti_frame(const logical_frame& of, bool odd, const eti_options& options = {});

bytes raw_eti(const std::vector<logical_frame>& frames, const eti_options& options = {});
bytes streamed_eti(const std::vector<logical_frame>& frames, const eti_options& options = {});
bytes framed_eti(const std::vector<logical_frame>& frames, const eti_options& options = {});

}  // namespace multiplex_builder

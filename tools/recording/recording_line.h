// One line of a recording: a JSON object becomes a call, or a list of everything that is wrong with it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/files/body_files.h"
#include "tools/recording/recording.h"

namespace dabspi {

struct recording_line {
    std::optional<decltype(call::what)> what;  // set exactly when `errors` is empty
    std::vector<std::string> errors;
};

// `line` holds neither its line end nor a comment, and is not blank.
recording_line read_recording_line(std::string_view line, body_files& files);

}  // namespace dabspi

// A plan becomes a recording: the text of its calls, and the files of its bodies.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "tools/record/plan.h"
#include "tools/recording/recording.h"

namespace dabspi {

struct made_recording {
    std::string text;
    std::size_t calls = 0;
    std::map<std::string, std::shared_ptr<const bytes>> files;  // relative to the recording
    std::set<std::string> sources;                              // paths of the files that it is made of
    std::vector<plan_error> errors;     // where in the plan, and what is wrong; then nothing is to be written
    std::vector<std::string> messages;  // of the documents
};

// `directory`: the plan's own, from which its files start. A plan that becomes more than `most_bytes`, text
// and bodies, is an error, and is not made.
constexpr std::size_t kMostOfRecording = std::size_t{64} << 20;
made_recording make_recording(const plan& from, const std::string& directory,
                              std::size_t most_bytes = kMostOfRecording);

}  // namespace dabspi

// The body files of one recording: each is read once, however often it is named, and held until the last call
// that names it is gone. Regular files only: a pipe or a device would make a recording that cannot be played
// twice.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "tools/recording/recording.h"

namespace dabspi {

class body_files {
 public:
    struct result {
        std::shared_ptr<const bytes> body;  // null when the file cannot be used
        std::string error;
    };

    // Relative names start from `directory`; an empty one is the current directory. All files together may
    // hold `most_bytes`; one that does not fit is an error.
    explicit body_files(std::string directory, std::size_t most_bytes = std::size_t{256} << 20)
        : directory_(std::move(directory)), most_bytes_(most_bytes) {}

    const result& read(const std::string& file);

 private:
    std::string directory_;
    std::size_t most_bytes_;
    std::size_t held_ = 0;                // bytes
    std::map<std::string, result> read_;  // by the name in the recording; failures are remembered too
};

}  // namespace dabspi

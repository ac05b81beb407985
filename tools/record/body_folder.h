// Bodies as files beside a recording, each once.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>

#include "tools/recording/recording.h"

namespace dabspi {

class body_folder {
 public:
    // `directory`: the recording's own; files go to its folder "objects".
    explicit body_folder(std::string directory) : directory_(std::move(directory)) {}

    // The name of a body's file, relative to the recording: that of its content name, with a number behind it
    // where another body stands under that already. Written if it is not there with the same bytes. Throws
    // std::runtime_error with a text for the user.
    std::string keep(const std::string& content_name, const bytes& body);

    std::size_t files() const { return files_.size(); }
    std::size_t size() const { return size_; }  // bytes of all

 private:
    using version = std::pair<std::string, std::pair<std::size_t, std::size_t>>;  // name; size and hash

    const std::string directory_;
    std::map<version, std::string> files_;
    std::map<std::string, std::size_t> numbers_;  // by file name without number: the last that was given
    std::size_t size_ = 0;
};

// A file's name for a content name: without characters that are none of a name's, and not too long.
std::string file_name_of(const std::string& content_name);

}  // namespace dabspi

// Records the calls that a receiver makes while it receives a multiplex.
#pragma once

#include <cstddef>
#include <string>

namespace dabspi {

struct multiplex_recording_options {
    std::string input;
    std::string recording;  // the file to be written; bodies go to the folder "objects" beside it
    std::string service;
    std::string flow;
    std::string fic;  // see air::open_options
    int address = -1;
    bool deliver_once = false;
    std::size_t limit = 1024;  // MiB of calls and bodies
};

// Reads the multiplex as it is recorded, so that memory does not grow with it. An exit status; messages go to
// standard error.
int record_multiplex(const multiplex_recording_options& options);

}  // namespace dabspi

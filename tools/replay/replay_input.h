// What replay plays: a source of calls, and what to tell of it.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tools/playing/player.h"
#include "tools/recording/call_source.h"

namespace dabspi {

struct replay_input_options {
    std::string path;
    library_api api = library_api::wrapper;
    std::size_t limit = 256;  // MiB, of recordings
    // Of multiplexes.
    std::string flow;
    std::string fic;  // and of a sub-channel's bytes
    int address = -1;
    std::string service;
    bool deliver_once = false;
};

struct replay_input {
    std::shared_ptr<void> owner;         // of what `calls` reads
    std::unique_ptr<call_source> calls;  // null: it cannot be used, and `errors` says why
    std::vector<std::string> errors;
    bool endless = false;           // it may be read for hours: nothing of it is known before
    std::size_t largest_image = 0;  // bytes
    std::size_t total = 0;          // what progress counts towards; 0: not known
    std::string things = "calls";
    std::function<std::size_t()> position;  // empty: the calls themselves are counted
    // After playing: what ended it early, and what else there is to say.
    std::function<std::vector<std::string>()> remarks;
};

// In a command that has no more than the replay, recordings alone.
replay_input open_replay_input(const replay_input_options& options);

// For both: of a recording that was read.
replay_input replay_of_recording(std::shared_ptr<recording> from, const replay_input_options& options);

}  // namespace dabspi

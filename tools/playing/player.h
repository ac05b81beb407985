// Plays calls through one of the library's interfaces, and passes on what the listener receives.
//
// Runs on the caller's thread, and so do both hooks; no two players may run in one process at the same time,
// since waiting for quiet and the logo directory are matters of the whole process.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>

#include "tools/recording/call_source.h"
#include "tools/recording/notification.h"
#include "tools/recording/recording.h"

namespace dabspi {

enum class library_api {
    wrapper,  // spi_wrap::toSpiServer
    core,     // spi::SpiServer
};

struct player_settings {
    library_api api = library_api::wrapper;
    std::string storage_path;          // an existing directory, in full
    bool wait_after_each_call = true;  // else feed as fast as the calls return, and wait once, at the end
    std::size_t most_unwaited = 0;     // wait after so many calls all the same; 0: never
    std::chrono::milliseconds longest_wait = std::chrono::seconds(60);  // for one call's work
};

struct player_hooks {
    // Each notification, in the order of the listener's calls. Waiting after each call, `at` is what the host
    // had set when it came. False: stop.
    std::function<bool(const notification& what, const notification_time& at)> notify;
    // After each call, and again and again during a long wait: the number of calls fed. False: stop. May be
    // empty.
    std::function<bool(std::size_t fed)> go_on;
};

enum class play_end {
    finished,   // every call was fed, and all its notifications passed on
    stopped,    // by a hook
    not_quiet,  // the library did not come to rest: a worker ended, or hangs. It is left as it is
};

// There must be nothing that the interface lacks, and a recording must have no errors. Throws std::exception
// with a text for the user when the library cannot be started or memory runs out.
play_end play(call_source& from, const player_settings& settings, const player_hooks& hooks);

// The same for all calls of a recording.
play_end play(const recording& from, const player_settings& settings, const player_hooks& hooks);

// Notes each call of the recording that the interface does not offer as an error of its line.
void refuse_missing_calls(recording& in, library_api api);

}  // namespace dabspi

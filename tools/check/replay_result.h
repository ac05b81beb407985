// What the library's listener received of a recording: the replay through the core interface, each
// notification with the line of the recording that led to it.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "tools/playing/player.h"
#include "tools/recording/notification.h"
#include "tools/recording/recording.h"

namespace dabspi::check {

struct replayed_notification {
    std::size_t line;  // of the call; 0 before the first
    notification_time at;
    notification what;
};

struct replay_result {
    std::vector<replayed_notification> all;  // in the order of the listener's calls
    play_end end = play_end::finished;
};

// Plays with a wait after each call. `go_on` is given how many calls were fed; false stops.
replay_result replay_recording(const recording& from, const std::string& storage_path,
                               const std::function<bool(std::size_t)>& go_on = {});

}  // namespace dabspi::check

#include "tools/check/replay_result.h"

namespace dabspi::check {

replay_result replay_recording(const recording& from, const std::string& storage_path,
                               const std::function<bool(std::size_t)>& go_on) {
    replay_result result;
    player_settings settings;
    settings.api = library_api::core;  // it reports every programme that is stored
    settings.storage_path = storage_path;
    player_hooks hooks;
    hooks.notify = [&](const notification& what, const notification_time& at) {
        result.all.push_back({at.line, at, what});
        return true;
    };
    hooks.go_on = go_on;
    result.end = play(from, settings, hooks);
    return result;
}

}  // namespace dabspi::check

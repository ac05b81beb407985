#include "tools/check/heard.h"

namespace dabspi::check {

hearing hear(const recording& from, const std::string& storage_path,
             const std::function<bool(std::size_t)>& go_on) {
    hearing result;
    player_settings settings;
    settings.api = library_api::core;  // it tells of every programme that is stored
    settings.storage_path = storage_path;
    player_hooks hooks;
    hooks.notify = [&](const notification& what, const moment& at) {
        result.all.push_back({at.line, at, what});
        return true;
    };
    hooks.go_on = go_on;
    result.end = play(from, settings, hooks);
    return result;
}

}  // namespace dabspi::check

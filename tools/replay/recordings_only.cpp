// For a command without the parts that read multiplexes.
#include "tools/replay/replay_input.h"

namespace dabspi {

replay_input open_replay_input(const replay_input_options& options) {
    auto from =
        std::make_shared<recording>(read_recording(options.path, recording_limits::of(options.limit)));
    return replay_of_recording(std::move(from), options);
}

}  // namespace dabspi

#include "tools/replay/replay_input.h"

#include "tools/playing/logo_room.h"
#include "tools/text/utf8.h"

namespace dabspi {

replay_input replay_of_recording(std::shared_ptr<recording> from, const replay_input_options& options) {
    replay_input in;
    refuse_missing_calls(*from, options.api);
    for (const recording_error& error : from->errors)
        in.errors.push_back(error_text(*from, error));
    if (in.errors.empty() &&
        (!options.flow.empty() || !options.fic.empty() || !options.service.empty() || options.deliver_once))
        in.errors.push_back(
            printable(from->name) +
            ": it is a call recording, which says service and objects itself; --flow, --service "
            "and --deliver are for multiplexes");
    if (!in.errors.empty()) return in;
    in.calls = std::make_unique<recorded_calls>(*from);
    in.largest_image = largest_image(*from);
    in.total = from->calls.size();
    in.owner = std::move(from);
    return in;
}

}  // namespace dabspi

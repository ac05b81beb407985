#include "tools/air/calls/open_calls.h"

#include <algorithm>
#include <cstring>
#include <filesystem>

namespace dabspi::air {

namespace {

// What was looked at already, then the rest.
std::size_t read_on(input_window& window, char* to, std::size_t space) {
    const byte_view seen = window.see(1).part(0, space);
    std::copy(seen.begin(), seen.end(), to);
    window.skip(seen.size());
    return seen.size();
}

bool may_be_multiplex(const std::string& path) {
    std::error_code unknown;
    return path == "-" ||
           (std::filesystem::exists(path, unknown) && !std::filesystem::is_directory(path, unknown));
}

}  // namespace

bool is_multiplex_kind(content_kind kind) {
    return kind == content_kind::raw_eti || kind == content_kind::streamed_eti ||
           kind == content_kind::framed_eti || kind == content_kind::edi || kind == content_kind::capture;
}

recording_text text_of(opened_frames& in) {
    return {[&in](char* to, std::size_t space) { return read_on(*in.window, to, space); },
            [&in] { return in.read_error(); }};
}

opened_calls open_calls(const std::string& path, const open_options& options,
                        const recording_limits& limits) {
    opened_calls opened;
    std::error_code unknown;
    if (may_be_multiplex(path)) opened.multiplex = open_frames(path, options);
    if (opened.is_multiplex()) return opened;
    if (opened.multiplex.window != nullptr &&
        (!options.fic.empty() || is_multiplex_kind(opened.multiplex.found.kind))) {
        opened.error = opened.multiplex.error;
        return opened;
    }
    if (opened.multiplex.window == nullptr || std::filesystem::is_regular_file(path, unknown)) {
        opened.recorded = read_recording(path, limits);
        return opened;
    }
    const bool piped = path == "-";
    opened.recorded = read_recording(text_of(opened.multiplex), piped ? "<stdin>" : path,
                                     piped ? "" : std::filesystem::path(path).parent_path().string(), limits);
    return opened;
}

}  // namespace dabspi::air

// A recording of any text: the reader never fails otherwise than by errors, each of which names a line that
// exists.
#include <string_view>

#include "fuzz/fuzz_support.h"
#include "tools/recording/recording.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const dabspi::recording read = dabspi::parse_recording(text, "fuzzed.jsonl", "/nonexistent");
    const auto lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1;
    std::size_t before = 0;
    for (const dabspi::call& call : read.calls) {
        expect(call.line > before && call.line <= lines, "calls are in the order of their lines");
        before = call.line;
        if (const auto* feed = std::get_if<dabspi::feed_mot_body>(&call.what))
            expect(feed->body != nullptr, "a body");
    }
    for (const dabspi::recording_error& error : read.errors) {
        expect(error.line <= lines && !error.text.empty(), "errors name a line and say what is wrong");
        expect(!error_text(read, error).empty(), "and can be printed");
    }
    return 0;
}

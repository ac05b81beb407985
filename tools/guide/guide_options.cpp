#include "tools/guide/guide_options.h"

#include "tools/terminal/error_messages.h"

namespace dabspi::guide {

namespace {

// What the guide does not have although the input held it.
void say_counts(const guide_counts& counts) {
    const auto say = [](std::size_t count, const char* text) {
        if (count != 0) print_error(std::to_string(count) + " " + text);
    };
    say(counts.malformed_objects,
        "objects are malformed; what could be read is there: dabspi inspect shows it");
    say(counts.repaired_characters, "characters are not UTF-8, or not for XML, and were replaced by U+FFFD");
    say(counts.without_service, "programmes name no service, and are left out");
    say(counts.without_time, "programmes have no time, and are left out");
    say(counts.same_start,
        "programmes begin at the same time as another of their service, and were replaced by it");
}

}  // namespace

const char* const kGuideInputs =
    "Call recordings, folders of objects as receivers dump them, single objects, or XML\ndocuments "
    "(ETSI TS 102 818); - is a recording on standard input";

void add_guide_options(CLI::App& app, guide_options& to) {
    add_local_time_options(app, to.local_time);
    app.add_option("--limit", to.limit, "How much is read of one input, in MiB (default: 256)")
        ->option_text("MIB")
        ->check(CLI::Range(std::size_t{1}, std::size_t{65536}));
}

std::optional<programme_guide> read_guide_of(const std::vector<std::string>& paths,
                                             const guide_options& options) {
    guide_settings settings;
    settings.limit = options.limit;
    settings.local = options.local_time.value();
    guide_input read = read_guide(paths, settings);
    print_errors(read.said, "messages");
    if (!read.errors.empty()) {
        print_errors(read.errors, "errors");
        return std::nullopt;
    }
    say_counts(read.guide.counts);
    return std::move(read.guide);
}

}  // namespace dabspi::guide

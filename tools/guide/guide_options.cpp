#include "tools/guide/guide_options.h"

#include "tools/encode/earlier_ids.h"
#include "tools/spi/value_problems.h"
#include "tools/terminal/error_messages.h"
#include "tools/text/utf8.h"

namespace dabspi::guide {

namespace {

// "e1.c185.c221.0" as well as "dab:ce1.c185.c221.0".
std::optional<spi_object::content_id> service_of(const std::string& text) {
    return spi_object::parse_content_id(uri_of_earlier_id(text).value_or(text));
}

std::string service_fault(const std::string& text) {
    return service_of(text) ? std::string()
                            : in_quotes(text) + " is no service such as e1.c185.c221.0: ECC, EId, SId, SCIdS";
}

// What the guide does not have although the input held it.
void say_counts(const guide_counts& counts) {
    const auto say = [](std::size_t count, const char* what, const char* text) {
        if (count != 0) print_error(spi_object::count_of(count, what) + ": " + text);
    };
    say(counts.malformed_objects, "malformed object",
        "what could be read is there; dabspi inspect shows more");
    say(counts.repaired_characters, "character",
        "not UTF-8, or not for XML, and therefore replaced by U+FFFD");
    say(counts.without_service, "programme", "left out, because no service is named");
    say(counts.without_time, "programme", "left out, because there is no time");
    say(counts.same_start, "programme",
        "replaced by another of the same service that begins at the same time");
}

}  // namespace

const char* const kGuideInputs =
    "Call recordings, recorded multiplexes, folders of objects as receivers dump them, single\nobjects, or "
    "XML "
    "documents (ETSI TS 102 818); - is a recording or a multiplex on standard input";

void add_guide_options(CLI::App& app, guide_options& to) {
    add_local_time_options(app, to.local_time);
    app.add_option("--service", to.service,
                   "Of documents: the service of those that name none, e.g. e1.c185.c221.0")
        ->option_text("ID")
        ->check(service_fault);
    app.add_option("--limit", to.limit, "How much is read of one input, in MiB (default: 256)")
        ->option_text("MIB")
        ->check(CLI::Range(std::size_t{1}, std::size_t{65536}));
}

std::optional<programme_guide> read_guide_of(const std::vector<std::string>& paths,
                                             const guide_options& options) {
    guide_settings settings;
    settings.limit = options.limit;
    settings.local = options.local_time.value();
    if (!options.service.empty()) settings.service = service_of(options.service);
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

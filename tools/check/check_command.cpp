#include "tools/check/check_command.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>

#include "tools/check/html_report.h"
#include "tools/check/json_report.h"
#include "tools/check/report.h"
#include "tools/check/text_report.h"
#include "tools/command_line/needed_name.h"
#include "tools/files/written_file.h"
#include "tools/playing/logo_room.h"
#include "tools/playing/storage.h"
#include "tools/terminal/error_messages.h"
#include "tools/terminal/interrupt.h"
#include "tools/terminal/output.h"
#include "tools/terminal/progress.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

using namespace check;

constexpr std::size_t kMostMessages = 100;

struct check_options {
    std::string input;
    std::string severity = "note";
    bool json = false;
    bool all = false;
    std::string html;
    std::string colour = "auto";
    std::string date;
    std::string service;
    std::optional<std::uint32_t> ensemble;
    std::size_t limit = 256;
};

// Messages of one kind, not without end.
void print_errors(const std::vector<std::string>& messages) {
    for (std::size_t i = 0; i < std::min(messages.size(), kMostMessages); ++i)
        print_error(messages[i]);
    if (messages.size() > kMostMessages)
        print_error("and " + std::to_string(messages.size() - kMostMessages) + " more");
}

folder_options folder_options_of(const check_options& options) {
    folder_options folder;
    folder.limit = options.limit;
    if (!options.date.empty()) folder.clock = parse_clock(options.date);
    if (!options.service.empty()) folder.service = parse_service(options.service);
    if (options.ensemble) folder.ensemble = static_cast<std::uint16_t>(*options.ensemble);
    return folder;
}

// What there is to tidy up while the recording is played. The examination behind that can take its time, and
// has nothing to tidy up: Ctrl-C ends it as it ends any program.
struct playing_things {
    std::optional<interrupt_watch> watch{std::in_place};
    std::optional<storage> store{storage::temporary()};

    // Does not return when a signal was noted.
    void put_away() {
        store.reset();
        const int signal = interrupt_watch::noted();
        watch.reset();
        if (signal != 0) die_by(signal);
    }
};

check_report play_and_look(checked_input input, const check_options& options) {
    playing_things things;
    std::optional<progress_line> progress;
    progress.emplace(STDERR_FILENO, ::isatty(STDERR_FILENO) != 0, input.calls.calls.size(), "calls");
    const std::string path = things.store->path();
    const std::size_t room = largest_image(input.calls);
    require_logo_room(path, room);
    return check_input(
        std::move(input), *severity_named(options.severity), path,
        [&](std::size_t fed) {
            progress->update(fed);
            return interrupt_watch::noted() == 0;
        },
        [&] {
            progress.reset();
            things.put_away();
        });
}

// Gives the exit status.
int print(const check_report& report, const check_options& options) {
    for (const std::string& each : report.disagreements)
        print_error(printable(report.input.calls.name) + ": " + each +
                    "; this is a fault of dabspi: what is said of this line may be wrong");
    if (!options.html.empty()) {
        const std::string page = html_report(report);
        const interrupt_watch watch;  // a file that is half written is put away
        const std::string error = write_whole_file(options.html, page);
        if (!error.empty()) {
            print_error("cannot write " + printable(options.html) + ": " + error);
            return kExitFailed;
        }
    }
    output out(STDOUT_FILENO);
    text_settings how;
    how.colours = colouring(wants_colour(options.colour, STDOUT_FILENO));
    how.all = options.all;
    // The page on standard output leaves no room for anything else.
    if (options.html != "-") out.write(options.json ? json_report(report) : text_report(report, how));
    if (options.html == "-") out.write(html_report(report));
    out.flush();
    if (out.error() != 0) {
        // A reader that has read enough is no reason for a message.
        if (out.error() != EPIPE)
            print_error("cannot write to standard output: " + std::generic_category().message(out.error()));
        return kExitFailed;
    }
    return report.findings.empty() ? kExitDone : kExitMalformed;
}

int run_check(const check_options& options) {
    std::error_code unknown;
    if (!options.html.empty() && std::filesystem::equivalent(options.html, options.input, unknown)) {
        print_error(printable(options.html) +
                    " is what is checked, and would be written over; give --html another name");
        return kExitUnusable;
    }
    checked_input input = read_input(options.input, folder_options_of(options));
    if (!input.errors.empty()) {
        print_errors(input.errors);
        return kExitUnusable;
    }
    // What replays cannot print is refused there; through the core interface everything can be played.
    const check_report report = play_and_look(std::move(input), options);
    if (report.replayed.end != play_end::not_quiet) return print(report, options);
    print_error("the library did not come to rest: one of its workers has ended or hangs");
    return kExitFailed;
}

std::string date_fault(const std::string& text) {
    return parse_clock(text) ? ""
                             : "\"" + printable(text) +
                                   "\" is no date; a date is written 2026-03-10, or "
                                   "2026-03-10T12:00 with a time";
}
std::string service_fault(const std::string& text) {
    return parse_service(text) ? ""
                               : "\"" + printable(text) +
                                     "\" is no service; a service is written "
                                     "ECC.SId.SCIdS, as in E1.C221.0";
}

}  // namespace

command add_check_command(CLI::App& dabspi) {
    CLI::App* const app =
        dabspi.add_subcommand("check", "Play a broadcast and explain what a receiver makes of it");
    const auto options = std::make_shared<check_options>();
    app->add_option("RECORDING", options->input,
                    "A recording (JSON Lines; - is standard input), or a folder of MOT bodies")
        ->required()
        ->option_text("or FOLDER");
    CLI::Option* const json = app->add_flag("--json", options->json, "Print one JSON object instead of text");
    app->add_option("--html", options->html, "Write a page as well, whole in one file; - is standard output")
        ->option_text("FILE")
        ->check(a_name_is_needed);
    app->add_option("--severity", options->severity,
                    "From which severity on findings count: note (default), warning or error")
        ->option_text("note|warning|error")
        ->check(CLI::IsMember({"note", "warning", "error"}));
    CLI::Option* const all = app->add_flag("--all", options->all, "Show every place of a kind of finding");
    app->add_option("--color", options->colour,
                    "Colours: auto (default) only on a terminal and without NO_COLOR in the environment")
        ->option_text("auto|always|never")
        ->check(CLI::IsMember({"auto", "always", "never"}));
    app->add_option("--date", options->date,
                    "Of a folder: the receiver's local date, at noon or at the time given")
        ->option_text("DATE[Thh:mm]")
        ->check(date_fault);
    app->add_option("--service", options->service, "Of a folder: the service that is listened to")
        ->option_text("ECC.SID.SCIDS")
        ->check(service_fault);
    app->add_option("--ensemble", options->ensemble, "Of a folder: the ensemble, e.g. 0xC185")
        ->option_text("EID")
        ->check(CLI::Range(std::uint32_t{0}, std::uint32_t{0xFFFF}));
    app->add_option("--limit", options->limit,
                    "How much is read, in MiB (default: 256), and a million calls for each 256")
        ->option_text("MIB")
        ->check(CLI::Range(std::size_t{1}, std::size_t{65536}));
    json->excludes(all);
    app->footer(
        "Date, service and ensemble of a folder are guessed from its objects when they are not given, and "
        "said.\n"
        "Exit status: 0 nothing was found; 1 something was, or output could not be written; 2 the input or\n"
        "the command line cannot be used.\n"
        "\n"
        "Examples:\n"
        "  dabspi check day.jsonl                       what is wrong, and why\n"
        "  dabspi check --html day.html day.jsonl       the same as a page, with schedules and logos\n"
        "  dabspi check --severity error dump/          for scripts: only what is lost or misread\n"
        "  dabspi explain gap                           more of one kind of finding");
    return {app, [options] { return run_check(*options); }};
}

}  // namespace dabspi

#include "tools/check/check_command.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>

#include "tools/check/all_reports.h"
#include "tools/check/html_report.h"
#include "tools/check/report.h"
#include "tools/command_line/needed_name.h"
#include "tools/files/whole_file.h"
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
    std::string flow;
    std::string fic;
    int address = -1;
    std::string service;
    std::string ensemble;
    long ends_within = 24;
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
    folder.service_text = options.service;
    folder.flow = options.flow;
    folder.fic = options.fic;
    folder.address = options.address;
    if (!options.service.empty()) folder.service = dab_identifier::of_service(options.service);
    if (!options.ensemble.empty()) folder.ensemble = dab_identifier::of_ensemble(options.ensemble);
    // A service may be said with its ensemble.
    if (folder.service && folder.service->ensemble && !folder.ensemble) folder.ensemble = folder.service;
    return folder;
}

// What there is to tidy up while a recording is played. The examination behind that can take its time, and
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

// Ends early when one did not end: then the last one tells.
std::vector<check_report> play_and_look(std::vector<checked_input> inputs, const check_options& options) {
    check_settings settings(*severity_named(options.severity));
    settings.ends_within = options.ends_within;
    std::size_t calls = 0;
    for (const checked_input& each : inputs)
        calls += each.calls.calls.size();
    progress_line progress(STDERR_FILENO, ::isatty(STDERR_FILENO) != 0, calls, "calls");
    std::vector<check_report> reports;
    std::size_t before = 0;
    for (checked_input& each : inputs) {
        const std::size_t of_this = each.calls.calls.size();
        playing_things things;
        const std::string path = things.store->path();
        require_logo_room(path, largest_image(each.calls));
        reports.push_back(check_input(
            std::move(each), settings, path,
            [&](std::size_t fed) {
                progress.update(before + fed);
                return interrupt_watch::noted() == 0;
            },
            [&] {
                progress.erase();
                things.put_away();
            }));
        before += of_this;
        if (reports.back().replayed.end != play_end::finished) break;
    }
    return reports;
}

// Gives the exit status.
int print(const std::vector<check_report>& reports, const check_options& options) {
    for (const check_report& report : reports)
        for (const std::string& each : report.disagreements)
            print_error(printable(report.input.calls.name) + ": " + each +
                        "; this is a fault of dabspi: what is said of this line may be wrong");
    if (!options.html.empty() && options.html != "-") {
        for (const page& each : pages_of(options.input, reports, options.html)) {
            std::string error;
            int signal = 0;
            {
                const interrupt_watch watch;  // a file that is half written is put away
                error = write_whole_file(each.path, each.content);
                signal = interrupt_watch::noted();
            }
            if (signal != 0) die_by(signal);
            if (error.empty()) continue;
            print_error("cannot write " + printable(each.path) + ": " + error);
            return kExitFailed;
        }
    }
    output out(STDOUT_FILENO);
    text_settings how;
    how.colours = colouring(wants_colour(options.colour, STDOUT_FILENO));
    how.all = options.all;
    // The page on standard output leaves no room for anything else.
    if (options.html == "-") {
        out.write(html_report(reports.front()));
    } else if (options.json) {
        out.write(json_of_all(options.input, reports));
    } else {
        out.write(text_of_all(options.input, reports, how));
    }
    out.flush();
    if (out.error() != 0) {
        // A reader that has read enough is no reason for a message.
        if (out.error() != EPIPE)
            print_error("cannot write to standard output: " + std::generic_category().message(out.error()));
        return kExitFailed;
    }
    const bool found = std::any_of(reports.begin(), reports.end(),
                                   [](const check_report& each) { return !each.findings.empty(); });
    return found ? kExitMalformed : kExitDone;
}

int run_check(const check_options& options) {
    std::error_code unknown;
    if (!options.html.empty() && std::filesystem::equivalent(options.html, options.input, unknown)) {
        print_error(printable(options.html) +
                    " is what is checked, and would be written over; give --html another name");
        return kExitUnusable;
    }
    std::vector<checked_input> inputs = read_inputs(options.input, folder_options_of(options));
    if (!inputs.front().errors.empty()) {
        print_errors(inputs.front().errors);
        return kExitUnusable;
    }
    if (options.html == "-" && inputs.size() > 1) {
        print_error(
            printable(options.input) + ": there are " + std::to_string(inputs.size()) +
            " ensembles, and a page holds one: name a file for --html, or choose one with --ensemble");
        return kExitUnusable;
    }
    // What replays cannot print is refused there; through the core interface everything can be played.
    const std::vector<check_report> reports = play_and_look(std::move(inputs), options);
    if (reports.back().replayed.end != play_end::not_quiet) return print(reports, options);
    print_error("the library did not come to rest: one of its workers has ended or hangs");
    return kExitFailed;
}

std::string date_fault(const std::string& text) {
    return parse_clock(text)
               ? ""
               : in_quotes(text) +
                     " is no date; a date is written 2026-03-10, with a time 2026-03-10T12:00, or as "
                     "today or now";
}
std::string ensemble_fault(const std::string& text) {
    return dab_identifier::of_ensemble(text) ? "" : no_ensemble(text);
}

}  // namespace

command add_check_command(CLI::App& dabspi) {
    CLI::App* const app =
        dabspi.add_subcommand("check", "Play a broadcast and explain what a receiver makes of it");
    const auto options = std::make_shared<check_options>();
    app->add_option(
           "INPUT", options->input,
           "A call recording (JSON Lines), a recorded multiplex (ETI(NI), EDI, a packet capture), a folder "
           "of "
           "dumped\nobjects, a tree with a folder for each ensemble, or one object; - is standard input")
        ->required()
        ->option_text(" ");
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
                    "Of a folder: the receiver's local date, at noon or at the time given; today is this "
                    "computer's\ndate at noon, now with its time")
        ->option_text("DATE[Thh:mm]|today|now")
        ->check(date_fault);
    app->add_option(
           "--service", options->service,
           "Of a folder or a multiplex: the service that is listened to, e.g. E1.C221.0; of a multiplex "
           "by\nits label as well, or all of them in turn (default: the first with audio)")
        ->option_text("ECC.SID.SCIDS|LABEL|all")
        ->check(a_name_is_needed);
    app->add_option("--flow", options->flow,
                    "Of a packet capture: read the flow to this destination (default: the first)")
        ->option_text("[ADDRESS:]PORT");
    app->add_option("--fic", options->fic,
                    "The input is one sub-channel's bytes, as receivers dump them, and FILE its FIC:\nFIBs "
                    "of 32 bytes")
        ->option_text("FILE")
        ->check(a_name_is_needed);
    app->add_option("--address", options->address, "With --fic: the packet address, where there are several")
        ->option_text("N")
        ->check(CLI::Range(0, 1023));
    app->add_option("--ensemble", options->ensemble,
                    "Of a folder: the ensemble, e.g. 0xC185 or e1.c185; of a tree, that ensemble alone")
        ->option_text("ECC.EID")
        ->check(ensemble_fault);
    app->add_option("--ends-within", options->ends_within,
                    "Warn when a schedule ends within so many hours (default 24)")
        ->option_text("HOURS")
        ->check(CLI::Range(0L, 24L * 366));
    app->add_option("--limit", options->limit,
                    "How much is read, in MiB (default: 256), and a million calls for each 256")
        ->option_text("MIB")
        ->check(CLI::Range(std::size_t{1}, std::size_t{65536}));
    json->excludes(all);
    app->footer(
        "Date, service and ensemble of a folder are guessed from its objects when they are not given, and "
        "said.\n"
        "Exit status: 0 nothing of the severity was found; 1 something was; 2 the input or the command line\n"
        "cannot be used; 3 output could not be written, or the library did not come to rest.\n"
        "\n"
        "Examples:\n"
        "  dabspi check day.jsonl                       what is wrong, and why\n"
        "  dabspi check multiplex.eti                   the same of a multiplex, with its carousels\n"
        "  dabspi check --html day.html day.jsonl       the same as a page, with schedules and logos\n"
        "  dabspi check --severity error --date today dump/\n"
        "                                               every night: a carousel that is stale is an error\n"
        "  dabspi explain gap                           more of one kind of finding");
    return {app, [options] { return run_check(*options); }};
}

}  // namespace dabspi

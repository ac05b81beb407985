#include "tools/replay/replay_command.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <optional>
#include <string>

#include "tools/command_line/needed_name.h"
#include "tools/playing/logo_room.h"
#include "tools/playing/player.h"
#include "tools/playing/storage.h"
#include "tools/recording/notification_json.h"
#include "tools/recording/notification_text.h"
#include "tools/replay/replay_input.h"
#include "tools/terminal/error_messages.h"
#include "tools/terminal/interrupt.h"
#include "tools/terminal/output.h"
#include "tools/terminal/progress.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

struct replay_options {
    std::string input;
    std::string flow;
    std::string fic;
    int address = -1;
    std::string service;
    std::string deliver = "every";
    bool json = false;
    std::string api = "wrapper";
    std::optional<std::string> storage;
    bool no_wait = false;
    bool keep = false;
    std::size_t limit = 256;
};

constexpr std::size_t kMostErrors = 100;

void report_errors(const std::string& name, const std::vector<std::string>& errors) {
    std::string text;
    const std::size_t shown = std::min(errors.size(), kMostErrors);
    for (std::size_t i = 0; i < shown; ++i)
        text += errors[i] + "\n";
    if (shown != errors.size())
        text += printable(name) + ": and " + std::to_string(errors.size() - shown) + " more errors\n";
    output standard_error(STDERR_FILENO);
    standard_error.write(text);
    standard_error.flush();
}

// Of an endless input: no more than these wait in the library's queues.
constexpr std::size_t kMostUnwaited = 1024;

// Plays what was found good, and prints. Gives the exit status; every end but that of a signal
// leads here.
int play_and_print(const replay_input& in, const replay_options& options, const std::string& storage_path,
                   const std::string& logo_root) {
    output standard_output(STDOUT_FILENO, [] { return interrupt_watch::noted() != 0; });
    progress_line progress(STDERR_FILENO, ::isatty(STDERR_FILENO) != 0, in.total, in.things);

    player_settings settings;
    settings.api = options.api == "core" ? library_api::core : library_api::wrapper;
    settings.storage_path = storage_path;
    settings.wait_after_each_call = !options.no_wait;
    settings.most_unwaited = in.endless ? kMostUnwaited : 0;

    player_hooks hooks;
    hooks.notify = [&](const notification& what, const notification_time& at) {
        progress.erase();
        return standard_output.write(options.json ? notification_json(what) + "\n"
                                                  : notification_text(what, at, logo_root));
    };
    hooks.go_on = [&](std::size_t fed) {
        const bool printed = standard_output.flush();
        progress.update(in.position ? in.position()
                                    : fed);  // after the output, which may be on the same terminal
        return printed && interrupt_watch::noted() == 0;
    };

    const play_end end = play(*in.calls, settings, hooks);
    standard_output.flush();
    progress.erase();
    if (end == play_end::not_quiet) {
        print_error(
            "the library did not come to rest: one of its workers has ended or hangs; the replay is not "
            "complete");
        return kExitFailed;
    }
    if (standard_output.error() != 0) {
        if (interrupt_watch::noted() == 0) print_output_error(standard_output.error());
        return kExitFailed;
    }
    if (in.remarks) print_errors(in.remarks(), "messages");
    const std::string error = in.calls->error();
    if (!error.empty()) {
        print_error(error);
        return kExitUnusable;
    }
    return end == play_end::finished ? kExitDone : kExitFailed;
}

int open_and_play(const replay_options& options) {
    replay_input_options how;
    how.path = options.input;
    how.api = options.api == "core" ? library_api::core : library_api::wrapper;
    how.limit = options.limit;
    how.flow = options.flow;
    how.fic = options.fic;
    how.address = options.address;
    how.service = options.service;
    how.deliver_once = options.deliver == "once";
    const replay_input in = open_replay_input(how);
    if (interrupt_watch::noted() != 0) return kExitFailed;
    if (in.calls == nullptr) {
        report_errors(options.input == "-" ? "<stdin>" : options.input, in.errors);
        return kExitUnusable;
    }
    storage store = options.storage ? storage::at(*options.storage) : storage::temporary();
    if (options.keep) {
        store.keep();
        print_error("the storage directory is kept: " + printable(store.path()));
    }
    require_logo_room(store.path(), in.largest_image);
    const int status = play_and_print(in, options, store.path(), store.logo_root());
    require_logo_room(store.path(), in.largest_image);
    return status;
}

int replay(const replay_options& options) {
    int status = kExitFailed;
    int signal = 0;
    {
        const interrupt_watch watch;  // from here on there is something to tidy up
        status = open_and_play(options);
        signal = interrupt_watch::noted();
    }
    if (signal != 0) die_by(signal);
    return status;
}

}  // namespace

command add_replay_command(CLI::App& dabspi) {
    CLI::App* const app = dabspi.add_subcommand(
        "replay", "Play a recording or a multiplex and print what the listener receives");
    const auto options = std::make_shared<replay_options>();
    app->add_option(
           "INPUT", options->input,
           "A call recording (JSON Lines), or a recorded multiplex: ETI(NI), EDI, a packet\ncapture; - is "
           "standard input")
        ->required()
        ->option_text(" ");
    app->add_flag("--json", options->json, "Print one JSON object a notification, instead of text");
    app->add_option(
           "--service", options->service,
           "Of a multiplex: the service to listen to, by label or identifier (default: the\nfirst with "
           "audio); all: go through all of them after each minute")
        ->option_text("SERVICE")
        ->check(a_name_is_needed);
    app->add_option(
           "--deliver", options->deliver,
           "Of a multiplex: feed each object every time it has been received whole\n(default), or once "
           "until it changes")
        ->option_text("every|once")
        ->check(CLI::IsMember({"every", "once"}));
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
    app->add_option("--api", options->api,
                    "The interface to play through: wrapper, the host-facing one (default), or core")
        ->option_text("wrapper|core")
        ->check(CLI::IsMember({"wrapper", "core"}));
    app->add_option("--storage", options->storage,
                    "The system's storage path: logos go to DIR/HdStationLogo. Made if it is\n"
                    "missing, never removed (default: a temporary directory)")
        ->option_text("DIR")
        ->check(a_name_is_needed);
    app->add_flag("--no-wait", options->no_wait,
                  "Feed as fast as the calls return, and wait once, at the end; what the\n"
                  "output holds is then partly left to chance");
    app->add_option(
           "--limit", options->limit,
           "How long the recording may be, in MiB (default: 256); its bodies may hold as\nmuch, and a "
           "million calls are taken for each 256")
        ->option_text("MIB")
        ->check(CLI::Range(std::size_t{1}, std::size_t{65536}));
    app->add_flag("--keep", options->keep, "Keep the temporary storage directory and say where it is");
    app->footer(
        "A recording is checked as a whole before anything is fed; a multiplex is read as it is played.\n"
        "Exit status: 0 every call was fed; 2 the input or the command line cannot be used;\n"
        "3 anything else, such as output that cannot be written.\n"
        "\n"
        "Examples:\n"
        "  dabspi replay day.jsonl                       read along\n"
        "  dabspi replay --json day.jsonl | jq .now.name what was on\n"
        "  dabspi replay --service all multiplex.eti     every service of a multiplex\n"
        "  dabspi replay --storage out day.jsonl         keep the logos in out/HdStationLogo\n"
        "  zcat day.jsonl.gz | dabspi replay -           from a pipe; body files are then relative\n"
        "                                                to the current directory");
    return {app, [options] { return replay(*options); }};
}

}  // namespace dabspi

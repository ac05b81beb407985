// dabspi: the library on a desk. Every subcommand has a file of its own; this one is their table of contents.

#include <csignal>
#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <vector>

#include "tools/check/check_command.h"
#include "tools/check/explain_command.h"
#include "tools/command.h"
#include "tools/complain.h"
#include "tools/inspect/inspect_command.h"
#include "tools/replay_command.h"
#include "tools/standard_descriptors.h"

namespace {

// For --help and --version, which are printed by the command-line parser.
int printed(int status) {
    std::cout.flush();
    if (std::cout) return status;
    dabspi::complain("cannot write to standard output");
    return dabspi::kExitFailed;
}

int run(int argc, char** argv) {
    CLI::App app("DAB Service and Programme Information (ETSI TS 102 371) on a desk", "dabspi");
    app.set_version_flag("--version", "dabspi " DABSPI_VERSION, "Print the version and exit");
    app.footer(
        "\"dabspi COMMAND --help\" tells more of a command.\n"
        "\n"
        "Examples:\n"
        "  dabspi replay day.jsonl                 what a receiver would have been told that day\n"
        "  dabspi replay --json --api core day.jsonl\n"
        "  dabspi inspect si.bin                   what is in an object, and what a receiver reads");
    app.failure_message([](const CLI::App*, const CLI::Error& error) {
        return std::string("dabspi: ") + error.what() + "\nRun with --help for more information.\n";
    });
    const std::vector<dabspi::command> commands = {
        dabspi::add_replay_command(app),
        dabspi::add_inspect_command(app),
        dabspi::add_check_command(app),
        dabspi::add_explain_command(app),
    };

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? printed(dabspi::kExitDone) : dabspi::kExitUnusable;
    }
    for (const dabspi::command& each : commands) {
        if (each.arguments->parsed()) return each.run();
    }
    dabspi::complain("a command is needed");
    std::cerr << app.help();
    return dabspi::kExitUnusable;
}

}  // namespace

int main(int argc, char** argv) {
    dabspi::occupy_closed_descriptors();
    // A closed pipe shows up where it is written to, so that temporary files get removed.
    std::signal(SIGPIPE, SIG_IGN);
    try {
        return run(argc, argv);
    } catch (const std::bad_alloc&) {
        dabspi::complain("out of memory");
    } catch (const std::exception& error) {
        dabspi::complain(error.what());
    }
    return dabspi::kExitFailed;
}

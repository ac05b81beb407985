// dabspi: the library on a desk. Every subcommand has a file of its own; tools/command_line/command_line.cpp
// lists them.

#include <CLI/CLI.hpp>
#include <csignal>
#include <exception>
#include <iostream>
#include <new>
#include <vector>

#include "tools/command_line/command.h"
#include "tools/command_line/command_line.h"
#include "tools/terminal/error_messages.h"
#include "tools/terminal/standard_streams.h"

namespace {

// For --help and --version, which are printed by the command-line parser.
int printed(int status) {
    std::cout.flush();
    if (std::cout) return status;
    dabspi::print_error("cannot write to standard output");
    return dabspi::kExitFailed;
}

int run(int argc, char** argv) {
    CLI::App app;
    const std::vector<dabspi::command> commands = dabspi::add_command_line(app);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? printed(dabspi::kExitDone) : dabspi::kExitUnusable;
    }
    for (const dabspi::command& each : commands) {
        if (each.arguments->parsed()) return each.run();
    }
    dabspi::print_error("a command is needed");
    std::cerr << app.help();
    return dabspi::kExitUnusable;
}

}  // namespace

int main(int argc, char** argv) {
    dabspi::occupy_closed_standard_streams();
    // A closed pipe shows up where it is written to, so that temporary files get removed.
    std::signal(SIGPIPE, SIG_IGN);
    try {
        return run(argc, argv);
    } catch (const std::bad_alloc&) {
        dabspi::print_error("out of memory");
    } catch (const std::exception& error) {
        dabspi::print_error(error.what());
    }
    return dabspi::kExitFailed;
}

// A host's process in small: the framework is part of the executable, the library (flavour `host`) finds it
// there. It replays recordings, with the command line of `dabspi replay`, so that the same expectations hold
// for it.

#include <CLI/CLI.hpp>
#include <csignal>
#include <exception>

#include "tools/replay/replay_command.h"
#include "tools/terminal/error_messages.h"
#include "tools/terminal/standard_streams.h"

int main(int argc, char** argv) {
    dabspi::occupy_closed_standard_streams();
    std::signal(SIGPIPE, SIG_IGN);
    CLI::App app("dabspi replay, by a host's process with its own framework", "host_process");
    app.require_subcommand(1);
    const dabspi::command replay = dabspi::add_replay_command(app);
    try {
        app.parse(argc, argv);
        return replay.run();
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? dabspi::kExitDone : dabspi::kExitUnusable;
    } catch (const std::exception& error) {
        dabspi::print_error(error.what());
        return dabspi::kExitFailed;
    }
}

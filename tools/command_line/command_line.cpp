#include "tools/command_line/command_line.h"

#include <CLI/CLI.hpp>
#include <string>

#include "tools/replay/replay_command.h"
#ifdef DABSPI_WORKBENCH
#include "tools/check/check_command.h"
#include "tools/check/explain_command.h"
#include "tools/encode/encode_command.h"
#include "tools/inspect/inspect_command.h"
#include "tools/record/record_command.h"
#include "tools/scan/scan_command.h"
#endif

namespace dabspi {

std::vector<command> add_command_line(CLI::App& app) {
    app.name("dabspi");
    app.description("DAB Service and Programme Information (ETSI TS 102 371) on a desk");
    app.set_version_flag("--version", "dabspi " DABSPI_VERSION, "Print the version and exit");
    app.footer(
        "\"dabspi COMMAND --help\" tells more of a command.\n"
        "\n"
        "Examples:\n"
        "  dabspi replay day.jsonl                 what a receiver would have been told that day\n"
        "  dabspi replay --json --api core day.jsonl\n"
        "  dabspi inspect si.bin                   what is in an object, and what a receiver reads\n"
        "  dabspi check day.jsonl                  what a receiver will not show as it was meant, and why\n"
        "  dabspi encode pi.xml                    an object of an XML document\n"
        "  dabspi record day.json                  a whole recording of documents and images\n"
        "  dabspi scan multiplex.eti               what is on a recorded multiplex, and where its SPI is");
    app.failure_message([](const CLI::App*, const CLI::Error& error) {
        return std::string("dabspi: ") + error.what() + "\nRun with --help for more information.\n";
    });
    // Each has a manual page of its own, made from its options and from its text: NAME.manual.1, beside its
    // sources.
    return {
        add_replay_command(app),
#ifdef DABSPI_WORKBENCH
        add_inspect_command(app), add_check_command(app),  add_explain_command(app),
        add_encode_command(app),  add_record_command(app), add_scan_command(app),
#endif
    };
}

}  // namespace dabspi

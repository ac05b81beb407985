#include "tools/command_line/command_line.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include "tools/files/input_kind.h"
#include "tools/replay/replay_command.h"
#include "tools/text/nearest.h"
#include "tools/text/utf8.h"
#ifdef DABSPI_WORKBENCH
#include "tools/carousel/carousel_command.h"
#include "tools/check/check_command.h"
#include "tools/check/explain_command.h"
#include "tools/compare/compare_command.h"
#include "tools/encode/encode_command.h"
#include "tools/export/export_command.h"
#include "tools/guide_page/guide_command.h"
#include "tools/inspect/inspect_command.h"
#include "tools/record/record_command.h"
#include "tools/scan/scan_command.h"
#endif

namespace dabspi {

namespace {

std::vector<std::string> command_names(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* each : app.get_subcommands([](const CLI::App*) { return true; }))
        names.push_back(each->get_name());
    return names;
}

std::vector<std::string> option_names(const CLI::App& of) {
    std::vector<std::string> names;
    for (const CLI::Option* each : of.get_options())
        for (const std::string& name : each->get_lnames())
            names.push_back("--" + name);
    return names;
}

// A file where a command belongs: what takes it.
std::string what_takes(const std::string& path) {
    std::error_code failed;
    if (std::filesystem::is_directory(path, failed)) return "; " + what_a_folder_is();
    if (!std::filesystem::is_regular_file(path, failed)) return {};
    std::string beginning(kSniffedBytes, '\0');
    std::ifstream file(path, std::ios::binary);
    file.read(beginning.data(), static_cast<std::streamsize>(beginning.size()));
    beginning.resize(static_cast<std::size_t>(file.gcount()));
    return "; " + what_it_is(sniff(beginning));
}

// What was typed and is nothing that is known, and what may have been meant. Empty where there is nothing to
// say.
std::string unexpected(const CLI::App& app) {
    const std::vector<std::string> words = app.remaining(true);
    if (words.empty()) return {};
    const std::string& word = words.front();
    const std::vector<const CLI::App*> parsed =
        app.get_subcommands([](const CLI::App* each) { return each->parsed(); });
    const CLI::App& at = parsed.empty() ? app : *parsed.front();
    const std::string command = parsed.empty() ? std::string() : at.get_name() + ": ";
    if (word.size() > 1 && word.front() == '-') {
        const std::string name = word.substr(0, word.find('='));
        return command + "there is no option " + printable(name) + did_you_mean(name, option_names(at));
    }
    if (!parsed.empty()) return command + in_quotes(word, 200) + " is one argument too many";
    const std::string meant = did_you_mean(word, command_names(app));
    return "there is no command " + in_quotes(word, 200) + (meant.empty() ? what_takes(word) : meant);
}

}  // namespace

std::vector<command> add_command_line(CLI::App& app) {
    app.name("dabspi");
    app.description("DAB Service and Programme Information (ETSI TS 102 371) on a desk");
    app.set_version_flag("--version", "dabspi " DABSPI_VERSION, "Print the version and exit");
    app.footer(
        "\"dabspi COMMAND --help\" explains a command.\n"
        "\n"
        "Examples:\n"
        "  dabspi replay day.jsonl                 what a receiver would have shown that day\n"
        "  dabspi replay --json --api core day.jsonl\n"
        "  dabspi inspect si.bin                   what is in an object, and what a receiver reads\n"
        "  dabspi check day.jsonl                  what a receiver will not show as it was meant, and why\n"
        "  dabspi encode pi.xml                    an object of an XML document\n"
        "  dabspi record day.json                  a whole recording of documents and images\n"
        "  dabspi scan multiplex.eti               what is on a recorded multiplex, and where its SPI is\n"
        "  dabspi export --xmltv guide.xml dump/   a programme guide for other programs\n"
        "  dabspi compare SI.xml dump/             what differs between two broadcasts\n"
        "  dabspi guide --html guide.html dump/    a page of programmes for a person\n"
        "  dabspi carousel SI.xml PI*.xml -o spi.eti   from documents to what a multiplexer sends");
    app.failure_message([](const CLI::App* all, const CLI::Error& error) {
        const bool extra = error.get_exit_code() == static_cast<int>(CLI::ExitCodes::ExtrasError);
        const std::string unknown = extra ? unexpected(*all) : std::string();
        return "dabspi: " + (unknown.empty() ? printable(error.what()) : unknown) +
               "\nRun with --help for more information.\n";
    });
    // Each has a manual page of its own, made from its options and from its text: NAME.manual.1, beside its
    // sources.
    return {
        add_replay_command(app),
#ifdef DABSPI_WORKBENCH
        add_inspect_command(app),  add_check_command(app),   add_explain_command(app),
        add_encode_command(app),   add_record_command(app),  add_scan_command(app),
        add_export_command(app),   add_compare_command(app), add_guide_command(app),
        add_carousel_command(app),
#endif
    };
}

}  // namespace dabspi

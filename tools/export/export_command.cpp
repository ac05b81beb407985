#include "tools/export/export_command.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <system_error>

#include "tools/command_line/needed_name.h"
#include "tools/export/guide_json.h"
#include "tools/export/spi_documents.h"
#include "tools/export/xmltv.h"
#include "tools/files/whole_file.h"
#include "tools/guide/guide_options.h"
#include "tools/terminal/error_messages.h"
#include "tools/terminal/interrupt.h"
#include "tools/terminal/output.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

struct export_options {
    std::vector<std::string> inputs;
    std::string xmltv;
    std::string spi;
    bool json = false;
    guide::guide_options guide;
};

constexpr std::size_t kMostSaid = 20;

// What is wrong with the outputs; empty if nothing is.
std::string output_fault(const export_options& options) {
    if (options.xmltv.empty() && options.spi.empty() && !options.json)
        return "say what is wanted: --xmltv FILE, --spi DIR or --json";
    if (options.json && options.xmltv == "-") return "--json and --xmltv - both want standard output";
    for (const std::string& input : options.inputs) {
        std::error_code unknown;
        if (!options.xmltv.empty() && std::filesystem::equivalent(options.xmltv, input, unknown))
            return printable(options.xmltv) + " is an input, and would be written over";
    }
    return {};
}

// Throws std::runtime_error with a text for the user.
void write_spi(const guide::programme_guide& of, const std::string& directory) {
    std::vector<std::string> said;
    const auto files = spi_documents(of, said);
    for (const auto& [name, content] : files) {
        if (interrupt_watch::noted() != 0) return;
        write_whole_file_and_folders(directory + "/" + name, content);
    }
    if (said.size() > kMostSaid) {
        const std::size_t more = said.size() - kMostSaid;
        said.resize(kMostSaid);
        said.push_back("and " + std::to_string(more) + " more pictures with other names");
    }
    for (const std::string& each : said)
        print_error(each);
    print_error(std::to_string(files.size()) + (files.size() == 1 ? " file" : " files") + " written to " +
                printable(directory));
}

// Gives the exit status.
int write_all(const guide::programme_guide& of, const export_options& options) {
    if (!options.spi.empty()) write_spi(of, options.spi);
    if (interrupt_watch::noted() != 0) return kExitFailed;
    output out(STDOUT_FILENO);
    if (options.xmltv == "-") {
        out.write(xmltv_of(of));
    } else if (!options.xmltv.empty()) {
        const std::string error = write_whole_file(options.xmltv, xmltv_of(of));
        if (!error.empty()) {
            print_error("cannot write " + printable(options.xmltv) + ": " + error);
            return kExitFailed;
        }
    }
    if (options.json) out.write(guide_json(of));
    if (out.flush()) return kExitDone;
    print_output_error(out.error());
    return kExitFailed;
}

int run_export(const export_options& options) {
    const std::string fault = output_fault(options);
    if (!fault.empty()) {
        print_error(fault);
        return kExitUnusable;
    }
    const auto read = guide::read_guide_of(options.inputs, options.guide);
    if (!read) return kExitUnusable;
    if (read->services.empty()) {
        print_error("there is no service and no programme to export; nothing was written");
        return kExitUnusable;
    }
    int status = kExitFailed;
    int signal = 0;
    {
        const interrupt_watch watch;  // a file that is half written is put away
        status = write_all(*read, options);
        signal = interrupt_watch::noted();
    }
    if (signal != 0) die_by(signal);
    return status;
}

}  // namespace

command add_export_command(CLI::App& dabspi) {
    CLI::App* const app = dabspi.add_subcommand(
        "export", "Write services, schedules and logos in the formats of other programs");
    const auto options = std::make_shared<export_options>();
    app->add_option("INPUT", options->inputs, guide::kGuideInputs)->required()->option_text("...");
    app->add_option("--xmltv", options->xmltv,
                    "Write an XMLTV document, for programs that show programme guides; - is standard output")
        ->option_text("FILE")
        ->check(a_name_is_needed);
    app->add_option("--spi", options->spi,
                    "Write XML documents (ETSI TS 102 818) and logos, laid out as a web server of RadioDNS\n"
                    "serves them: SI.xml, and a document for each service and day. Made if it is missing")
        ->option_text("DIR")
        ->check(a_name_is_needed);
    app->add_flag("--json", options->json, "Print one JSON object with everything");
    guide::add_guide_options(*app, options->guide);
    app->footer(
        "Names and descriptions are written in full, as they were broadcast, not only what receivers read.\n"
        "A service that is on several ensembles is there once. Files are written whole or not at all.\n"
        "Exit status: 0 everything was written; 2 an input or the command line cannot be used; 3 anything\n"
        "else, such as output that cannot be written.\n"
        "\n"
        "Examples:\n"
        "  dabspi export --xmltv guide.xml dump/             for a programme guide\n"
        "  dabspi export --spi htdocs SI.xml PI.xml logos/   for a web server\n"
        "  dabspi export --json day.jsonl | jq '.services[].names'");
    return {app, [options] { return run_export(*options); }};
}

}  // namespace dabspi

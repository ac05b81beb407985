#include "tools/guide_page/guide_command.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <memory>
#include <system_error>

#include "tools/command_line/needed_name.h"
#include "tools/files/whole_file.h"
#include "tools/guide/guide_options.h"
#include "tools/guide_page/guide_page.h"
#include "tools/terminal/error_messages.h"
#include "tools/terminal/output.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

struct guide_command_options {
    std::vector<std::string> inputs;
    std::string html;
    guide::guide_options guide;
};

int run_guide(const guide_command_options& options) {
    for (const std::string& input : options.inputs) {
        std::error_code unknown;
        if (std::filesystem::equivalent(options.html, input, unknown)) {
            print_error(printable(options.html) + " is an input, and would be written over");
            return kExitUnusable;
        }
    }
    const auto read = guide::read_guide_of(options.inputs, options.guide);
    if (!read) return kExitUnusable;
    if (read->services.empty()) {
        print_error("there is no service and no programme to show; nothing was written");
        return kExitUnusable;
    }
    const std::string page = guide_page(*read);
    if (options.html == "-") return print(page, STDOUT_FILENO) ? kExitDone : kExitFailed;
    const std::string error = write_whole_file(options.html, page);
    if (error.empty()) return kExitDone;
    print_error("cannot write " + printable(options.html) + ": " + error);
    return kExitFailed;
}

}  // namespace

command add_guide_command(CLI::App& dabspi) {
    CLI::App* const app = dabspi.add_subcommand("guide", "Make a page of the programme guide for a person");
    const auto options = std::make_shared<guide_command_options>();
    app->add_option("INPUT", options->inputs, guide::kGuideInputs)->required()->option_text("...");
    app->add_option("--html", options->html,
                    "Where the page goes: one file, nothing is fetched; - is standard output")
        ->required()
        ->option_text("FILE")
        ->check(a_name_is_needed);
    guide::add_guide_options(*app, options->guide);
    app->footer(
        "All services of all ensembles, with their days, programmes, descriptions and logos. What is on now "
        "is\n"
        "marked by the reader's clock.\n"
        "Exit status: 0 the page was written; 2 an input or the command line cannot be used; 3 anything\n"
        "else, such as output that cannot be written.\n"
        "\n"
        "Examples:\n"
        "  dabspi guide --html guide.html dump/\n"
        "  dabspi guide --html guide.html SI.xml PI.xml logos/");
    return {app, [options] { return run_guide(*options); }};
}

}  // namespace dabspi

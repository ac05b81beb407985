#include "tools/check/explain_command.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <system_error>

#include "tools/check/catalogue.h"
#include "tools/terminal/error_messages.h"
#include "tools/terminal/output.h"
#include "tools/terminal/wrapped_text.h"
#include "tools/text/nearest.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

using namespace check;

std::string one_line(const catalogue_entry& of) {
    char text[128];
    std::snprintf(text, sizeof text, "%-7s  %-19s %s\n", severity_name(of.how_bad), of.name, of.title);
    return text;
}

std::string whole(const catalogue_entry& of) {
    return std::string(of.name) + " (" + severity_name(of.how_bad) + "): " + of.title + "\n\n" +
           wrapped_text(of.why, "  ") + "\n" + wrapped_text(of.more, "  ") + "\n" +
           wrapped_text(std::string("Remedy: ") + of.remedy, "  ");
}

// docs/findings.md: a page for those who have no command at hand.
std::string markdown() {
    std::string text =
        "# Findings of dabspi check\n\n"
        "What `dabspi check` finds in a broadcast, why a receiver behaves so, and what remedies it. Codes "
        "are stable. An error is what is\n"
        "lost or read wrongly, a warning what is shown otherwise than it was meant or less than it could be, "
        "a "
        "note what is by design or\n"
        "harmless. `dabspi explain CODE` explains each; `dabspi explain --markdown` prints this "
        "page.\n\n"
        "| code | severity | what | why | remedy |\n|---|---|---|---|---|\n";
    for (const catalogue_entry& each : catalogue())
        text += std::string("| `") + each.name + "` | " + severity_name(each.how_bad) + " | " + each.title +
                " | " + each.why + " | " + each.remedy + " |\n";
    return text;
}

std::string unknown(const std::string& name) {
    std::vector<std::string> names;
    for (const catalogue_entry& each : catalogue())
        names.emplace_back(each.name);
    const std::string meant = did_you_mean(name, names);
    return "there is no finding " + in_quotes(name) +
           (meant.empty() ? "; \"dabspi explain\" lists them all" : meant);
}

// "malformed,gap": the completion offers them.
std::string all_names() {
    std::string text;
    for (const catalogue_entry& each : catalogue())
        text += (text.empty() ? "" : ",") + std::string(each.name);
    return text;
}

int explain(const std::vector<std::string>& names, bool as_page) {
    std::string text;
    bool all_known = true;
    for (const std::string& name : names) {
        const catalogue_entry* const entry = find_entry(name);
        if (entry == nullptr) {
            print_error(unknown(name));
            all_known = false;
            continue;
        }
        text += (text.empty() ? "" : "\n") + whole(*entry);
    }
    if (as_page) {
        text = markdown();
    } else if (names.empty()) {
        for (const catalogue_entry& each : catalogue())
            text += one_line(each);
    }
    output out(STDOUT_FILENO);
    out.write(text);
    out.flush();
    if (out.error() != 0) {
        if (out.error() != EPIPE)
            print_error("cannot write to standard output: " + std::generic_category().message(out.error()));
        return kExitFailed;
    }
    return all_known ? kExitDone : kExitUnusable;
}

}  // namespace

command add_explain_command(CLI::App& dabspi) {
    CLI::App* const app = dabspi.add_subcommand("explain", "Explain what \"dabspi check\" finds");
    const auto names = std::make_shared<std::vector<std::string>>();
    const auto as_page = std::make_shared<bool>(false);
    CLI::Option* const codes =
        app->add_option("CODE", *names, "Codes of findings, such as gap; without one, all are listed")
            ->type_name("{" + all_names() + "}")
            ->option_text("...");
    app->add_flag("--markdown", *as_page, "Print the whole catalogue as a table in Markdown")
        ->excludes(codes);
    app->footer(
        "Exit status: 0 all codes are explained; 2 one is not known; 3 output could not be written.\n"
        "\n"
        "Examples:\n"
        "  dabspi explain                 the list\n"
        "  dabspi explain gap overlap     why now has no next");
    return {app, [names, as_page] { return explain(*names, *as_page); }};
}

}  // namespace dabspi

#include "tools/scan/scan_command.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "tools/air/container/open_frames.h"
#include "tools/air/container/opened_messages.h"
#include "tools/command_line/needed_name.h"
#include "tools/scan/multiplex_scan.h"
#include "tools/scan/report.h"
#include "tools/terminal/error_messages.h"
#include "tools/terminal/interrupt.h"
#include "tools/terminal/output.h"
#include "tools/terminal/progress.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

using namespace scan;

struct scan_options {
    std::string input;
    std::string flow;
    std::string fic;
    int address = -1;
    bool json = false;
};

constexpr std::uint64_t kMebibyte = 1024 * 1024;

// All that the frames say, up to their end or an interruption.
scanned_multiplex scan_all(air::opened_frames& in, const std::string& name) {
    progress_line progress(STDERR_FILENO, ::isatty(STDERR_FILENO) != 0,
                           static_cast<std::size_t>(in.size / kMebibyte), "MiB");
    multiplex_scan scan;
    constexpr std::uint64_t kFramesBetween = 256;
    for (air::frame each; in.frames->next(each);) {
        scan.take(each);
        if (each.index % kFramesBetween != 0) continue;
        progress.update(static_cast<std::size_t>(in.frames->position() / kMebibyte));
        if (interrupt_watch::noted() != 0) break;
    }
    scan.finish();
    scanned_multiplex found = scan.result();
    found.name = name;
    found.form = in.found;
    found.container = in.frames->statistics();
    found.interrupted = interrupt_watch::noted() != 0;
    if (in.capture != nullptr) {
        found.flows = in.capture->flows();
        if (in.capture->chosen() != nullptr)
            found.chosen = static_cast<std::size_t>(in.capture->chosen() - in.capture->flows().data());
    }
    return found;
}

int print(const scanned_multiplex& found, bool json) {
    output out(STDOUT_FILENO);
    out.write(json ? json_report(found) : text_report(found));
    if (out.flush()) return kExitDone;
    print_output_error(out.error());
    return kExitFailed;
}

int scan_and_print(const scan_options& options) {
    const std::string name = options.input == "-" ? "<stdin>" : options.input;
    air::open_options how;
    how.flow = options.flow;
    how.fic = options.fic;
    how.address = options.address;
    how.given_up = [] { return interrupt_watch::noted() != 0; };
    air::opened_frames in = air::open_frames(options.input, how);
    if (interrupt_watch::noted() != 0) return kExitFailed;
    if (in.frames == nullptr) {
        print_error(in.error);
        return kExitUnusable;
    }
    const scanned_multiplex found = scan_all(in, name);
    const std::string nothing = found.interrupted ? std::string() : why_no_frame(in, options.flow);
    if (!nothing.empty()) {
        print_error(printable(name) + ": " + nothing);
        return kExitUnusable;
    }
    const std::string flows = flows_to_choose_from(in, options.flow);
    if (!flows.empty()) print_error(printable(name) + ": " + flows);
    const int status = print(found, options.json);
    const std::string early = early_end(in);
    if (!early.empty()) print_error(printable(name) + ": " + early);
    if (in.read_error() != 0) return kExitFailed;
    return status;
}

int run_scan(const scan_options& options) {
    int status = kExitFailed;
    int signal = 0;
    {
        const interrupt_watch watch;  // what has been found so far is worth printing
        status = scan_and_print(options);
        signal = interrupt_watch::noted();
    }
    if (signal != 0) die_by(signal);
    return status;
}

}  // namespace

command add_scan_command(CLI::App& dabspi) {
    CLI::App* const app =
        dabspi.add_subcommand("scan", "Tell what is on a recorded multiplex, and where its SPI is");
    const auto options = std::make_shared<scan_options>();
    app->add_option("INPUT", options->input,
                    "A multiplex: ETI(NI), EDI, or a packet capture with EDI; - is standard input")
        ->required()
        ->option_text(" ");
    app->add_flag("--json", options->json, "Print one JSON object instead of text");
    app->add_option("--flow", options->flow,
                    "Of a capture: read the flow to this destination (default: the first)")
        ->option_text("[ADDRESS:]PORT");
    app->add_option("--fic", options->fic,
                    "The input is one sub-channel's bytes, as receivers dump them, and FILE its FIC:\nFIBs "
                    "of 32 bytes")
        ->option_text("FILE")
        ->check(a_name_is_needed);
    app->add_option("--address", options->address, "With --fic: the packet address, where there are several")
        ->option_text("N")
        ->check(CLI::Range(0, 1023));
    app->footer(
        "The form of the input is recognised by its content. It may begin and end anywhere.\n"
        "Exit status: 0 the multiplex was read; 2 the input or the command line cannot be used; 1 anything\n"
        "else. After Ctrl-C what has been found so far is printed.\n"
        "\n"
        "Examples:\n"
        "  dabspi scan multiplex.eti                    services, and where the SPI is\n"
        "  dabspi scan --json multiplex.edi | jq .spi   the same for scripts\n"
        "  dabspi scan --flow 12002 capture.pcap        one of several flows\n"
        "  zcat multiplex.eti.gz | dabspi scan -        from a pipe, as it comes");
    return {app, [options] { return run_scan(*options); }};
}

}  // namespace dabspi

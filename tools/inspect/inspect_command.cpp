#include "tools/inspect/inspect_command.h"
#include "tools/command_line/needed_name.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <memory>

#include "tools/inspect/inspected.h"
#include "tools/inspect/json_report.h"
#include "tools/inspect/report.h"
#include "tools/inspect/text_report.h"
#include "tools/spi/xml_document.h"
#include "tools/terminal/error_messages.h"
#include "tools/terminal/output.h"
#include "tools/terminal/progress.h"
#include "tools/text/dab_identifier.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

struct inspect_options {
    std::vector<std::string> objects;
    std::vector<std::size_t> lines;
    std::string flow;
    std::string fic;
    int address = -1;
    std::string ensemble;
    bool json = false;
    bool xml = false;
    bool hex = false;
    std::string colour = "auto";
    std::size_t limit = 256;
};

std::optional<std::uint16_t> ensemble_of(const inspect_options& options) {
    const auto id = dab_identifier::of_ensemble(options.ensemble);
    return id ? id->ensemble : std::nullopt;
}

// The document of the one object there is. Gives the exit status.
int print_xml(const gathered& found, output& out) {
    std::vector<const inspected_body*> objects;
    for (const inspected_body& each : found.bodies)
        if (each.kind == body_kind::spi_object) objects.push_back(&each);
    if (objects.size() != 1) {
        print_error(objects.empty()
                        ? "there is no SPI object for an XML document"
                        : "an XML document holds one object, and there are " +
                              std::to_string(objects.size()) + ": name one, or choose one with --line");
        return kExitUnusable;
    }
    const object_report report = inspect_object(*objects.front(), std::nullopt);
    const std::string location = printable(objects.front()->location());
    const spi_object::xml_document document = spi_object::xml_of(report.tree);
    if (document.text.empty()) {
        print_error(location +
                    ": the object has no epg and no serviceInformation, so there is no XML document");
        return kExitMalformed;
    }
    out.write(document.text);
    // What the document cannot show is said beside it.
    std::vector<std::string> messages;
    bool complete = true;
    for (const spi_object::problem_at& each : spi_object::problems_of(report.tree)) {
        const bool left_out = each.what->code == spi_object::problem_code::too_many_elements ||
                              each.what->code == spi_object::problem_code::text_too_long;
        complete = complete && !left_out;
        if (left_out || severity_of(each.what->code) == spi_object::severity::malformed)
            messages.push_back(location + ": byte " + std::to_string(each.what->offset) + ": " +
                               printable(each.what->text) +
                               (left_out ? "; what follows it is not in the document" : ""));
    }
    for (const spi_object::xml_note& each : document.notes)
        messages.push_back(location + ": byte " + std::to_string(each.offset) + ": " + printable(each.text));
    if (report.tree.omitted != 0) {
        complete = false;
        messages.push_back(location + ": " + std::to_string(report.tree.omitted) +
                           " more malformed places and remarks; something may be missing from the document");
    }
    print_errors(messages, "messages");
    return complete && report.tree.well_formed() ? kExitDone : kExitMalformed;
}

int print_all(const gathered& found, const inspect_options& options, output& out, progress_line& progress) {
    text_style style;
    style.hex = options.hex;
    style.colours = colouring(wants_colour(options.colour, STDOUT_FILENO));
    int status = kExitDone;
    std::size_t done = 0;
    for (const inspected_body& each : found.bodies) {
        if (each.kind != body_kind::spi_object) {
            progress.erase();
            out.write(options.json ? json_of_other(each) : text_of_other(each, style));
        } else {
            const object_report report = inspect_object(each, ensemble_of(options));
            if (!report.tree.well_formed()) status = kExitMalformed;
            progress.erase();
            if (options.json) {
                out.write(json_report(report, options.hex));
            } else {
                out.write(text_report(report, style) + (&each == &found.bodies.back() ? "" : "\n"));
            }
        }
        if (!out.flush()) break;
        progress.update(++done);
    }
    return status;
}

int inspect(const inspect_options& options) {
    const bool terminal = ::isatty(STDERR_FILENO) != 0;
    gathered found;
    {
        progress_line progress(STDERR_FILENO, terminal, 0, "files read");
        gather_options how;
        how.lines = options.lines;
        how.limit = options.limit;
        how.flow = options.flow;
        how.fic = options.fic;
        how.address = options.address;
        found = gather(options.objects, how, [&progress](std::size_t read) { progress.update(read); });
    }
    print_errors(found.errors, "errors");
    output out(STDOUT_FILENO);
    int status = kExitDone;
    if (options.xml) {
        status = found.errors.empty() || !found.bodies.empty() ? print_xml(found, out) : kExitUnusable;
    } else {
        progress_line progress(STDERR_FILENO, terminal, found.bodies.size(), "objects");
        status = print_all(found, options, out, progress);
    }
    out.flush();
    if (out.error() != 0) {
        print_output_error(out.error());
        return kExitFailed;
    }
    return found.errors.empty() ? status : kExitUnusable;
}

}  // namespace

command add_inspect_command(CLI::App& dabspi) {
    CLI::App* const app = dabspi.add_subcommand(
        "inspect", "Show binary SPI objects as trees, and what a receiver takes from them");
    const auto options = std::make_shared<inspect_options>();
    app->add_option("OBJECT", options->objects,
                    "Binary SPI objects, call recordings, recorded multiplexes (ETI(NI), EDI, "
                    "packet\ncaptures), or folders of "
                    "objects as receivers dump them; - is standard input")
        ->required()
        ->option_text("...");
    app->add_option("--flow", options->flow,
                    "Of packet captures: read the flow to this destination (default: the first)")
        ->option_text("[ADDRESS:]PORT");
    app->add_option("--fic", options->fic,
                    "The input is one sub-channel's bytes, as receivers dump them, and FILE its FIC:\nFIBs "
                    "of 32 bytes")
        ->option_text("FILE")
        ->check(a_name_is_needed);
    app->add_option("--address", options->address, "With --fic: the packet address, where there are several")
        ->option_text("N")
        ->check(CLI::Range(0, 1023));
    app->add_option("--line", options->lines, "Of recordings, only the object fed by line N; may be repeated")
        ->option_text("N")
        ->allow_extra_args(false)
        ->check(CLI::PositiveNumber);
    app->add_option("--ensemble", options->ensemble,
                    "The ensemble that the receiver is on, e.g. 0xC185 or e1.c185 (default: that of the "
                    "recording,\nelse the object's own)")
        ->option_text("ECC.EID")
        ->check([](const std::string& text) {
            return dab_identifier::of_ensemble(text) ? std::string() : no_ensemble(text);
        });
    CLI::Option* const json =
        app->add_flag("--json", options->json, "Print one JSON object for each object, instead of text");
    CLI::Option* const xml = app->add_flag(
        "--xml", options->xml, "Print the XML document (ETSI TS 102 818) that one object stands for");
    CLI::Option* const hex = app->add_flag("--hex", options->hex, "Show the bytes beside the tree");
    app->add_option("--color", options->colour,
                    "Colours: auto (default) only on a terminal and without NO_COLOR in the environment")
        ->option_text("auto|always|never")
        ->check(CLI::IsMember({"auto", "always", "never"}));
    app->add_option("--limit", options->limit, "How much is read, in MiB (default: 256)")
        ->option_text("MIB")
        ->check(CLI::Range(std::size_t{1}, std::size_t{65536}));
    json->excludes(xml);
    xml->excludes(hex);
    app->footer(
        "The tree has a line for each element and attribute: its offset and the length of its content in "
        "bytes,\n"
        "whether a receiver reads it, its name in the standard and its value. Tokens are shown expanded and "
        "as\n"
        "coded. What is malformed stands where it is, with what a receiver makes of it.\n"
        "Exit status: 0 all objects are well formed; 1 one is malformed; 2 one cannot be read, or the\n"
        "command line cannot be used; 3 output could not be written.\n"
        "\n"
        "Examples:\n"
        "  dabspi inspect si.bin                      the tree\n"
        "  dabspi inspect --hex si.bin | less         with the bytes beside it\n"
        "  dabspi inspect --line 12 day.jsonl         the object that line 12 of a recording feeds\n"
        "  dabspi inspect --xml pi.bin >pi.xml        as an XML document\n"
        "  dabspi inspect --json dump/ | jq .kind     all objects in a folder");
    return {app, [options] { return inspect(*options); }};
}

}  // namespace dabspi

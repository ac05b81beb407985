#include "tools/encode/encode_command.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <memory>
#include <set>
#include <utility>

#include "tools/encode/encode_report.h"
#include "tools/files/input_kind.h"
#include "tools/files/whole_file.h"
#include "tools/terminal/error_messages.h"
#include "tools/terminal/output.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

struct options_of_encode {
    std::vector<std::string> documents;
    std::string output;
    std::string directory = ".";
    std::string name;
    std::vector<std::string> ensembles;
    bool tokens = false;
    bool lenient = false;
    bool json = false;
    bool verbose = false;
};

// Everything that was read and made, and what there is to say of it; nothing is written yet.
struct made_all {
    std::vector<made_file> files;
    std::vector<std::string> errors;
    bool lenient_helps = false;
    std::vector<std::string> messages;
};

encode_options how(const options_of_encode& options) {
    encode_options result;
    result.lenient = options.lenient;
    for (const std::string& each : options.ensembles)
        result.ensembles.push_back(*spi_object::parse_ensemble_id(each));
    return result;
}

void say(const encoded_document& of, const std::string& name, const options_of_encode& options,
         made_all& all) {
    for (const source_note& each : of.errors)
        all.errors.push_back(note_text(name, each));
    for (const source_note& each : of.warnings)
        all.messages.push_back(note_text(name, each));
    if (options.verbose)
        for (const left_out& each : of.omitted)
            all.messages.push_back(note_text(name, each.note) + "; left out");
    const std::string omitted = omitted_text(of);
    if (!omitted.empty())
        all.messages.push_back(printable(name) + ": " + omitted +
                               (options.verbose ? "" : "; --verbose lists them"));
}

void make_document(const std::string& path, const options_of_encode& options, made_all& all) {
    const std::string name = path == "-" ? "<stdin>" : path;
    std::string error;
    std::optional<std::string> text = read_whole_file(path, error);
    if (!text) {
        all.errors.push_back(printable(name) + ": " + error);
        return;
    }
    const sniffed_input kind = sniff(std::string_view(*text).substr(0, kSniffedBytes));
    if (kind.kind != input_kind::xml && kind.kind != input_kind::empty && kind.kind != input_kind::text) {
        all.errors.push_back(printable(name) + ": this is no XML document: " + what_it_is(kind));
        return;
    }
    const xml_source source(std::move(*text));
    const encoded_document made = encode_document(source, how(options));
    all.lenient_helps = all.lenient_helps || (source.root() && !made.errors.empty());
    say(made, name, options, all);
    token_choice tokens;
    tokens.build = options.tokens;
    for (const encoded_object& each : made.objects) {
        try {
            all.files.push_back({name, {}, make_object(each, tokens)});
        } catch (const std::length_error& failed) {
            all.errors.push_back(printable(name) + ": " + failed.what() + "; split the document");
        }
    }
}

// Where each object goes; the errors say where none can go.
void name_files(const options_of_encode& options, made_all& all) {
    const bool single = !options.output.empty() || !options.name.empty();
    if (single && all.files.size() > 1) {
        std::string names;
        for (const made_file& each : all.files)
            names += (names.empty() ? "" : ", ") + each.object.header.content_name +
                     (each.object.header.scope_id.empty() ? "" : " (" + each.object.header.scope_id + ")");
        all.errors.push_back("--output and --name are for one object, and there are " +
                             std::to_string(all.files.size()) + ": " + names +
                             "; choose with --ensemble, or use --directory");
        return;
    }
    std::set<std::string> taken;
    for (made_file& each : all.files) {
        std::string& content_name = each.object.header.content_name;
        if (!options.name.empty()) content_name = options.name;
        if (!taken.insert(content_name).second)
            all.errors.push_back(printable(each.source) + ": a second object is named " + content_name +
                                 "; encode it by itself, with --name");
        each.file = options.output.empty() ? options.directory + "/" + content_name : options.output;
        if (options.output.empty() && options.directory == ".") each.file = content_name;
        if (options.output.empty() && content_name.find('/') != std::string::npos)
            all.errors.push_back("the name " + in_quotes(content_name) +
                                 " is no file name; say with --output where the object goes");
    }
}

int write_files(const made_all& all, const options_of_encode& options) {
    bool on_standard_output = false;
    for (const made_file& each : all.files) {
        const std::string body(each.object.body.begin(), each.object.body.end());
        if (each.file != "-") {
            write_whole_file_and_folders(each.file, body);
        } else {
            on_standard_output = true;
            if (!print(body, STDOUT_FILENO)) return kExitFailed;
        }
    }
    std::string report;
    if (options.json) {
        for (const made_file& each : all.files)
            report += file_json(each) + "\n";
    } else {
        report = file_table(all.files, {options.tokens, options.verbose});
    }
    return print(report, on_standard_output ? STDERR_FILENO : STDOUT_FILENO) ? kExitDone : kExitFailed;
}

int encode(const options_of_encode& options) {
    made_all all;
    for (const std::string& each : options.documents)
        make_document(each, options, all);
    if (all.errors.empty()) name_files(options, all);
    print_errors(all.messages, "messages");
    if (all.errors.empty()) return write_files(all, options);
    print_errors(all.errors, "errors");
    print_error(std::string("nothing was written") +
                (all.lenient_helps && !options.lenient ? "; --lenient codes what can be coded" : ""));
    return kExitUnusable;
}

std::string check_ensemble(const std::string& text) {
    return spi_object::parse_ensemble_id(text)
               ? std::string()
               : in_quotes(text) + " is no ensemble such as e1.ce15: ECC and EId";
}

}  // namespace

command add_encode_command(CLI::App& dabspi) {
    CLI::App* const app =
        dabspi.add_subcommand("encode", "Make binary SPI objects of XML documents (ETSI TS 102 818)");
    const auto options = std::make_shared<options_of_encode>();
    app->add_option("DOCUMENT", options->documents,
                    "XML documents: service information, programme information, programme\ngroups; - is "
                    "standard input")
        ->required()
        ->option_text("...");
    CLI::Option* const output_option =
        app->add_option("--output,-o", options->output, "Where the one object goes; - is standard output")
            ->option_text("FILE");
    CLI::Option* const directory =
        app->add_option("--directory,-d", options->directory,
                        "Where objects go, each under its content name (default: the current\ndirectory). "
                        "Made if it is missing")
            ->check(refuse_empty_folder)
            ->option_text("DIR");
    app->add_option("--name", options->name, "The content name of the one object, instead of the usual one")
        ->option_text("NAME");
    app->add_option("--ensemble", options->ensembles,
                    "Only service information of this ensemble, e.g. e1.ce15; may be repeated\n(default: an "
                    "object for each ensemble)")
        ->option_text("ID")
        ->allow_extra_args(false)
        ->check(check_ensemble);
    app->add_flag("--tokens", options->tokens,
                  "Build a token table that makes each object smaller, and say by how much");
    app->add_flag("--lenient", options->lenient,
                  "Code what can be coded, and warn of the rest, instead of refusing the\ndocument");
    app->add_flag("--json", options->json, "Print one JSON object for each object, with its MOT parameters");
    app->add_flag("--verbose,-v", options->verbose, "List what was left out, and the tokens");
    output_option->excludes(directory);
    app->footer(
        "What has no coding is left out and counted: bearers that are not of the DAB domain, and what only\n"
        "XML can say. Everything else that cannot be coded is an error, with its line and column.\n"
        "Nothing is written before all documents have been found good.\n"
        "Exit status: 0 all objects were written; 2 a document or the command line cannot be used;\n"
        "3 anything else, such as output that cannot be written.\n"
        "\n"
        "Examples:\n"
        "  dabspi encode PI.xml                            makes w20260302dC221.EHB\n"
        "  dabspi encode --directory out --tokens *.xml    a folder of objects, smaller\n"
        "  dabspi encode --ensemble e1.ce15 SI.xml         one ensemble of several\n"
        "  dabspi encode -o - PI.xml | dabspi inspect -    what is in it");
    return {app, [options] { return encode(*options); }};
}

}  // namespace dabspi

#include "tools/encode/encode_command.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <map>
#include <memory>
#include <utility>

#include "tools/command_line/needed_name.h"
#include "tools/encode/document_messages.h"
#include "tools/encode/earlier_ids.h"
#include "tools/encode/encode_report.h"
#include "tools/encode/local_time_options.h"
#include "tools/files/input_kind.h"
#include "tools/files/whole_file.h"
#include "tools/terminal/error_messages.h"
#include "tools/terminal/output.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

constexpr std::size_t kLongestFileName = 240;  // with room for what a writer puts behind it
constexpr std::size_t kMostNamesSaid = 10;
constexpr std::size_t kMebibyte = 1024 * 1024;
constexpr std::size_t kObjectsOfDocument = 8;  // as large as the objects of one may be, in documents

struct options_of_encode {
    std::vector<std::string> documents;
    std::string output;
    std::string directory = ".";
    std::string name;
    std::vector<std::string> ensembles;
    std::string service;
    local_time_options local_time;
    std::size_t limit = 8;
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

// "e1.c185.c221.0" as well as "dab:ce1.c185.c221.0".
std::string as_uri(const std::string& id) {
    const std::optional<std::string> uri = uri_of_earlier_id(id);
    return uri ? *uri : id;
}

encode_options how(const options_of_encode& options) {
    encode_options result;
    result.lenient = options.lenient;
    result.most_bytes = options.limit * kMebibyte * kObjectsOfDocument;
    if (!options.service.empty()) result.service = spi_object::parse_content_id(as_uri(options.service));
    result.local = options.local_time.value();
    for (const std::string& each : options.ensembles)
        result.ensembles.push_back(*spi_object::parse_ensemble_id(each));
    return result;
}

void say(const encoded_document& of, const std::string& name, const options_of_encode& options,
         made_all& all) {
    for (const source_note& each : of.errors)
        all.errors.push_back(note_text(name, each));
    for (std::string& each : messages_of(of, name, options.verbose))
        all.messages.push_back(std::move(each));
}

bool lenient_helps(const xml_source& source, encode_options options) {
    options.lenient = true;
    return encode_document(source, options).errors.empty();
}

void make_document(const std::string& path, const options_of_encode& options, made_all& all) {
    const std::string name = path == "-" ? "<stdin>" : path;
    std::string error;
    std::optional<std::string> text = read_whole_file(path, error, options.limit * kMebibyte);
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
    all.lenient_helps = all.lenient_helps || (!made.errors.empty() && lenient_helps(source, how(options)));
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

// "w20260302dC221-2.EHB": receivers take a second object of one name and size for the first one.
void tell_apart(made_all& all) {
    std::map<std::string, std::size_t> taken;
    std::map<std::string, std::string> renamed;
    for (const made_file& each : all.files)
        taken.emplace(each.object.header.content_name, 0);
    for (made_file& each : all.files) {
        std::string& name = each.object.header.content_name;
        const std::string usual = name;
        const std::size_t number = ++taken[usual];
        if (number == 1) continue;
        const std::size_t point = std::min(usual.rfind('.'), usual.size());
        std::size_t suffix = number;
        do {
            name = usual.substr(0, point) + "-" + std::to_string(suffix++) + usual.substr(point);
        } while (!taken.emplace(name, 1).second);
        std::string& names = renamed[usual];
        if (number <= kMostNamesSaid) names += (names.empty() ? "" : ", ") + name;
        if (number == kMostNamesSaid + 1) names += " ...";
    }
    for (const auto& [usual, names] : renamed)
        all.messages.push_back(printable(usual) + " is the usual name of " + std::to_string(taken[usual]) +
                               " objects; the others are named " + printable(names));
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
    for (made_file& each : all.files)
        if (!options.name.empty()) each.object.header.content_name = options.name;
    tell_apart(all);
    for (made_file& each : all.files) {
        const std::string& content_name = each.object.header.content_name;
        each.file = options.output.empty() ? options.directory + "/" + content_name : options.output;
        if (options.output.empty() && options.directory == ".") each.file = content_name;
        const bool odd = content_name.find_first_of(std::string_view("/\0", 2)) != std::string::npos ||
                         content_name == "." || content_name == ".." ||
                         content_name.size() > kLongestFileName;
        for (const std::string& document : options.documents) {
            std::error_code unknown;
            if (each.file != "-" && document != "-" &&
                std::filesystem::equivalent(each.file, document, unknown))
                all.errors.push_back(printable(each.file) +
                                     " is one of the documents, and would be written over");
        }
        if (options.output.empty() && odd)
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

std::string check_service(const std::string& text) {
    return spi_object::parse_content_id(as_uri(text))
               ? std::string()
               : in_quotes(text) + " is no service such as e1.c185.c221.0: ECC, EId, SId, SCIdS";
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
            ->option_text("FILE")
            ->check(a_name_is_needed);
    CLI::Option* const directory =
        app->add_option("--directory,-d", options->directory,
                        "Where objects go, each under its content name (default: the current\ndirectory). "
                        "Made if it is missing")
            ->option_text("DIR")
            ->check(a_name_is_needed);
    app->add_option("--name", options->name, "The content name of the one object, instead of the usual one")
        ->option_text("NAME")
        ->check(a_name_is_needed);
    app->add_option("--ensemble", options->ensembles,
                    "Only service information of this ensemble, e.g. e1.ce15; may be repeated\n(default: an "
                    "object for each ensemble)")
        ->option_text("ID")
        ->allow_extra_args(false)
        ->check(check_ensemble);
    app->add_option(
           "--service", options->service,
           "The service of programme information that names none, and of service information\nwhose one "
           "service has no bearer of the DAB domain, e.g. e1.c185.c221.0")
        ->option_text("ID")
        ->check(check_service);
    add_local_time_options(*app, options->local_time);
    app->add_flag("--tokens", options->tokens,
                  "Build a token table that makes each object smaller, and say by how much");
    app->add_flag("--lenient", options->lenient,
                  "Code what can be coded, and warn of the rest, instead of refusing the\ndocument");
    app->add_option(
           "--limit", options->limit,
           "How large a document may be, in MiB (default: 8); its objects may be eight times\nas large")
        ->option_text("MIB")
        ->check(CLI::Range(std::size_t{1}, std::size_t{4096}));
    app->add_flag("--json", options->json, "Print one JSON object for each object, with its MOT parameters");
    app->add_flag("--verbose,-v", options->verbose, "List what was left out, and the tokens");
    output_option->excludes(directory);
    app->footer(
        "What has no coding is left out and counted: bearers that are not of the DAB domain, and what only\n"
        "XML can say. What earlier editions write otherwise is converted and counted. Everything else that "
        "cannot be coded is an error, with its line and column.\n"
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

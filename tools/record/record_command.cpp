#include "tools/record/record_command.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <ctime>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <system_error>

#include "tools/command_line/needed_name.h"
#include "tools/files/input_kind.h"
#include "tools/files/whole_file.h"
#include "tools/record/made_recording.h"
#include "tools/record/record_multiplex.h"
#include "tools/record/skeleton.h"
#include "tools/terminal/error_messages.h"
#include "tools/terminal/output.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

namespace fs = std::filesystem;

struct record_options {
    std::vector<std::string> plans;
    std::string directory = ".";
    bool check = false;
    bool skeleton = false;
    std::optional<std::size_t> limit;  // MiB
    // Of a multiplex.
    std::string output;
    std::string service;
    std::string flow;
    std::string fic;
    int address = -1;
    std::string deliver = "every";
};

constexpr std::size_t kMostOfPlan = kMostOfRecording >> 20;

struct made_from {
    std::string plan;
    std::string recording;  // file name
    made_recording made;
};

std::string error_line(const std::string& plan, const plan_error& error) {
    return printable(plan + (error.where.empty() ? "" : ": " + error.where)) + ": " + printable(error.text);
}

made_from make(const std::string& path, std::size_t limit, std::vector<std::string>& errors,
               std::vector<std::string>& messages) {
    made_from result;
    const bool piped = path == "-";
    result.plan = piped ? "<stdin>" : path;
    result.recording = (piped ? "recording" : fs::path(path).stem().string()) + ".jsonl";
    std::string error;
    const std::optional<std::string> text = read_whole_file(path, error, limit << 20);
    if (!text) {
        errors.push_back(printable(result.plan) + ": " + error);
        return result;
    }
    const sniffed_input kind = sniff(std::string_view(*text).substr(0, kSniffedBytes));
    if (kind.kind != input_kind::plan && kind.kind != input_kind::other_json &&
        kind.kind != input_kind::empty) {
        errors.push_back(printable(result.plan) + ": this is no plan: " + what_it_is(kind));
        return result;
    }
    const plan read = read_plan(*text);
    std::vector<plan_error> wrong = read.errors;
    if (wrong.empty()) {
        result.made = make_recording(read, piped ? "" : fs::path(path).parent_path().string(), limit << 20);
        wrong = result.made.errors;
    }
    for (const plan_error& each : wrong)
        errors.push_back(error_line(result.plan, each));
    messages.insert(messages.end(), result.made.messages.begin(), result.made.messages.end());
    return result;
}

bool stands_there(const std::string& file, std::string_view content) {
    std::error_code failed;
    if (fs::file_size(file, failed) != content.size() || failed) return false;
    std::string error;
    const std::optional<std::string> there = read_whole_file(file, error);
    return there && *there == content;
}

std::string_view text_of(const bytes& body) {
    return {reinterpret_cast<const char*>(body.data()), body.size()};
}

std::string inside(const std::string& directory, const std::string& name) {
    return directory == "." ? name : directory + "/" + name;
}

// Each file of a recording: its path, and what it holds.
template <class Call>
void for_each_file(const made_from& of, const std::string& directory, Call call) {
    for (const auto& [name, body] : of.made.files)
        call(inside(directory, name), text_of(*body));
    call(inside(directory, of.recording), of.made.text);
}

std::string counted(std::size_t count, const char* thing) {
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

int check(const std::vector<made_from>& all, const std::string& directory) {
    std::string text;
    for (const made_from& each : all)
        for_each_file(each, directory, [&](const std::string& file, std::string_view content) {
            std::error_code failed;
            if (stands_there(file, content)) return;
            text += (fs::exists(file, failed) ? "differs: " : "missing: ") + printable(file) + "\n";
        });
    if (!print(text, STDOUT_FILENO)) return kExitFailed;
    return text.empty() ? kExitDone : kExitMalformed;
}

int write(const std::vector<made_from>& all, const std::string& directory) {
    std::string text;
    for (const made_from& each : all) {
        std::size_t size = 0;
        for_each_file(each, directory, [&](const std::string& file, std::string_view content) {
            size += content.size();
            if (!stands_there(file, content)) write_whole_file_and_folders(file, content);
        });
        text += printable(inside(directory, each.recording)) + ": " + counted(each.made.calls, "call") +
                ", " + counted(each.made.files.size(), "body file") + ", " + std::to_string(size) +
                " bytes\n";
    }
    return print(text, STDOUT_FILENO) ? kExitDone : kExitFailed;
}

// Two recordings may share a file only if they mean the same bytes.
void refuse_conflicts(const std::vector<made_from>& all, std::vector<std::string>& errors) {
    std::map<std::string, std::pair<const made_from*, std::string_view>> files;
    for (const made_from& each : all)
        for_each_file(each, ".", [&](const std::string& file, std::string_view content) {
            const auto [entry, fresh] = files.emplace(file, std::make_pair(&each, content));
            if (!fresh && entry->second.second != content)
                errors.push_back(printable(each.plan) + ": " + in_quotes(file, 200) + " is another file in " +
                                 printable(entry->second.first->plan) +
                                 "; rename one, or record into two folders");
        });
}

// A recording must not be written over what it is made of.
void refuse_inputs(const std::vector<made_from>& all, const std::string& directory,
                   std::vector<std::string>& errors) {
    std::set<std::string> inputs;
    for (const made_from& each : all) {
        inputs.insert(each.plan);
        inputs.insert(each.made.sources.begin(), each.made.sources.end());
    }
    for (const made_from& each : all)
        for_each_file(each, directory, [&](const std::string& file, std::string_view content) {
            std::error_code failed;
            if (!fs::exists(file, failed) || stands_there(file, content)) return;
            for (const std::string& input : inputs)
                if (fs::equivalent(file, input, failed))
                    errors.push_back(
                        printable(each.plan) + ": " + in_quotes(file, 200) +
                        " would be written over, and it is an input; record into another folder");
        });
}

std::string today() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    char text[16];
    std::strftime(text, sizeof text, "%Y-%m-%d", &local);
    return text;
}

int write_skeleton(const record_options& options) {
    const plan_skeleton made = make_skeleton(options.plans, today());
    print_errors(made.messages, "messages");
    print_errors(made.errors, "errors");
    if (made.text.empty()) return kExitUnusable;
    return print(made.text, STDOUT_FILENO) ? kExitDone : kExitFailed;
}

int record_from_air(const record_options& options) {
    if (options.plans.size() != 1) {
        print_error("--output takes one multiplex; of plans --directory says where recordings go");
        return kExitUnusable;
    }
    multiplex_recording_options how;
    how.input = options.plans.front();
    how.recording = options.output;
    how.service = options.service;
    how.flow = options.flow;
    how.fic = options.fic;
    how.address = options.address;
    how.deliver_once = options.deliver == "once";
    how.limit = options.limit.value_or(how.limit);
    return record_multiplex(how);
}

int record(const record_options& options) {
    if (!options.output.empty()) return record_from_air(options);
    if (options.skeleton) return write_skeleton(options);
    std::vector<made_from> all;
    std::vector<std::string> errors;
    std::vector<std::string> messages;
    for (const std::string& each : options.plans)
        all.push_back(make(each, options.limit.value_or(kMostOfPlan), errors, messages));
    if (errors.empty()) refuse_conflicts(all, errors);
    if (errors.empty() && !options.check) refuse_inputs(all, options.directory, errors);
    print_errors(messages, "messages");
    if (!errors.empty()) {
        print_errors(errors, "errors");
        print_error("nothing was written");
        return kExitUnusable;
    }
    return options.check ? check(all, options.directory) : write(all, options.directory);
}

}  // namespace

command add_record_command(CLI::App& dabspi) {
    CLI::App* const app = dabspi.add_subcommand(
        "record", "Make recordings of plans: XML documents, images and a clock; or of a multiplex");
    const auto options = std::make_shared<record_options>();
    app->add_option(
           "PLAN", options->plans,
           "Plans, JSON; - is standard input, its files are then relative to the\ncurrent directory. With "
           "--output a recorded multiplex: ETI(NI), EDI, a packet\ncapture")
        ->required()
        ->option_text("...");
    app->add_option(
           "--directory,-d", options->directory,
           "Where PLAN.jsonl and its objects go (default: the current directory).\nMade if it is missing")
        ->option_text("DIR")
        ->check(a_name_is_needed);
    app->add_option(
           "--limit", options->limit,
           "How much a recording may become, calls and bodies, in MiB (default: 64 of a\nplan, 1024 of a "
           "multiplex)")
        ->option_text("MIB")
        ->check(CLI::Range(std::size_t{1}, std::size_t{65536}));
    CLI::Option* const skeleton = app->add_flag(
        "--skeleton", options->skeleton,
        "Print a plan to start from: PLAN are then documents, objects, images and folders\nof these");
    CLI::Option* const check_option =
        app->add_flag("--check", options->check,
                      "Write nothing: compare with what stands in DIR, and list what differs\nor is missing");
    skeleton->excludes(check_option);
    CLI::Option* const from_air =
        app->add_option(
               "--output,-o", options->output,
               "Record what a receiver calls while it receives a multiplex: the recording's\nname; bodies go "
               "to objects/ beside it")
            ->option_text("FILE")
            ->check(a_name_is_needed);
    from_air->excludes(skeleton)->excludes(check_option);
    app->add_option(
           "--service", options->service,
           "The service to listen to, by label or identifier (default: the first with\naudio); all: go "
           "through all of them after each minute")
        ->option_text("SERVICE")
        ->check(a_name_is_needed)
        ->needs(from_air);
    app->add_option("--deliver", options->deliver,
                    "Each object every time it has been received whole (default), or once until it\nchanges")
        ->option_text("every|once")
        ->check(CLI::IsMember({"every", "once"}))
        ->needs(from_air);
    app->add_option("--flow", options->flow,
                    "Of a packet capture: read the flow to this destination (default: the first)")
        ->option_text("[ADDRESS:]PORT")
        ->needs(from_air);
    app->add_option("--fic", options->fic,
                    "The input is one sub-channel's bytes, as receivers dump them, and FILE its FIC:\nFIBs "
                    "of 32 bytes")
        ->option_text("FILE")
        ->check(a_name_is_needed)
        ->needs(from_air);
    app->add_option("--address", options->address, "With --fic: the packet address, where there are several")
        ->option_text("N")
        ->check(CLI::Range(0, 1023))
        ->needs(from_air);
    app->footer(
        "A plan says which objects go round in which carousel, when the listener changes the service, and "
        "how\n"
        "the clock ticks. Nothing is written before all plans have been found good; a file that is already\n"
        "there with the same bytes is left alone.\n"
        "Exit status: 0 the recordings were written, or are there as they should be; 1 --check found a\n"
        "difference; 2 a plan or the command line cannot be used; 3 anything else, such as output that "
        "cannot\n"
        "be written.\n"
        "\n"
        "Examples:\n"
        "  dabspi record --skeleton *.xml logos >day.json   a plan to start from\n"
        "  dabspi record day.json                     makes day.jsonl and objects/\n"
        "  dabspi record --directory out *.json       several, into one folder\n"
        "  dabspi record -o air.jsonl multiplex.eti   makes air.jsonl and objects/ of what is on air\n"
        "  dabspi record --check -d out day.json      is out/day.jsonl what the plan gives?");
    return {app, [options] { return record(*options); }};
}

}  // namespace dabspi

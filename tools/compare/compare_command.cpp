#include "tools/compare/compare_command.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>

#include "tools/command_line/needed_name.h"
#include "tools/compare/comparison_report.h"
#include "tools/compare/guide_comparison.h"
#include "tools/compare/time_words.h"
#include "tools/guide/guide_options.h"
#include "tools/terminal/error_messages.h"
#include "tools/terminal/output.h"
#include "tools/text/nearest.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

constexpr std::size_t kMostListed = 10;  // of a kind

struct compare_options {
    std::string a;
    std::string b;
    std::vector<std::string> with_a;
    std::vector<std::string> with_b;
    std::string tolerance = "0s";
    std::vector<std::string> ignored;
    bool all = false;
    bool json = false;
    guide::guide_options guide;
};

std::string tolerance_fault(const std::string& text) {
    return compare::parse_span(text)
               ? std::string()
               : in_quotes(text) + " is no span such as 30s, 1min or 1h, of at most a day";
}

bool is_meant(const compare::kind_words& kind, const std::string& name) {
    return name == kind.name || name == kind.topic;
}

std::string ignored_fault(const std::string& name) {
    std::vector<std::string> known;
    for (const compare::kind_words& each : compare::all_kinds()) {
        if (is_meant(each, name)) return {};
        if (known.empty() || std::find(known.begin(), known.end(), each.topic) == known.end())
            known.emplace_back(each.topic);
        known.emplace_back(each.name);
    }
    return in_quotes(name) + " is no kind of difference" + did_you_mean(name, known) +
           "; there are services, days, programmes, descriptions, genres and logos, and the kinds that "
           "--json "
           "names";
}

std::vector<std::string> inputs_of(const std::string& first, const std::vector<std::string>& more) {
    std::vector<std::string> all = {first};
    all.insert(all.end(), more.begin(), more.end());
    return all;
}

int run_compare(const compare_options& options) {
    const std::vector<std::string> a = inputs_of(options.a, options.with_a);
    const std::vector<std::string> b = inputs_of(options.b, options.with_b);
    if (std::count(a.begin(), a.end(), "-") + std::count(b.begin(), b.end(), "-") > 1) {
        print_error("standard input can be read once only");
        return kExitUnusable;
    }
    compare::compare_settings settings;
    settings.tolerance = compare::parse_span(options.tolerance).value_or(0);
    for (const compare::kind_words& each : compare::all_kinds())
        if (std::any_of(options.ignored.begin(), options.ignored.end(),
                        [&](const std::string& name) { return is_meant(each, name); }))
            settings.ignored.insert(each.kind);
    if (settings.ignored.size() == compare::all_kinds().size()) {
        print_error("--ignore leaves nothing to compare");
        return kExitUnusable;
    }
    const auto guide_a = guide::read_guide_of(a, options.guide);
    const auto guide_b = guide::read_guide_of(b, options.guide);
    if (!guide_a || !guide_b) return kExitUnusable;
    for (const auto& [guide, letter] : {std::make_pair(&*guide_a, "A"), std::make_pair(&*guide_b, "B")})
        if (guide->services.empty()) {
            print_error(std::string(letter) +
                        " holds neither a service nor a programme: there is nothing to compare");
            return kExitUnusable;
        }
    const compare::comparison made = compare::compare_guides(*guide_a, *guide_b, settings);
    const compare::compared_side side_a{a, &*guide_a};
    const compare::compared_side side_b{b, &*guide_b};
    const std::string report = options.json
                                   ? json_report(made, side_a, side_b, settings.tolerance)
                                   : text_report(made, side_a, side_b, options.all ? 0 : kMostListed);
    if (!print(report, STDOUT_FILENO)) return kExitFailed;
    return made.differences.empty() ? kExitDone : kExitMalformed;
}

}  // namespace

command add_compare_command(CLI::App& dabspi) {
    CLI::App* const app = dabspi.add_subcommand("compare", "Say what differs between two broadcasts");
    const auto options = std::make_shared<compare_options>();
    app->add_option("A", options->a,
                    "What it should be: a call recording, a folder of objects, a single object, or an\n"
                    "XML document (ETSI TS 102 818); - is a recording on standard input")
        ->required();
    app->add_option("B", options->b, "What it is, of the same kinds")->required();
    app->add_option("--with-a", options->with_a, "Another input of A, such as its schedules; may be repeated")
        ->option_text("INPUT")
        ->allow_extra_args(false)
        ->check(a_name_is_needed);
    app->add_option("--with-b", options->with_b, "Another input of B; may be repeated")
        ->option_text("INPUT")
        ->allow_extra_args(false)
        ->check(a_name_is_needed);
    app->add_option("--tolerance", options->tolerance,
                    "How far starts and durations may differ, e.g. 30s, 1min or 1h (default: 0s)")
        ->option_text("SPAN")
        ->check(tolerance_fault);
    app->add_option(
           "--ignore", options->ignored,
           "Leave out services, days, programmes, descriptions, genres or logos, or a single kind of\n"
           "difference, such as programme-duration; several with commas")
        ->option_text("WHAT")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->check(ignored_fault);
    app->add_flag("--all", options->all, "List all differences, not only the first of each kind");
    app->add_flag("--json", options->json, "Print one JSON object with all differences");
    guide::add_guide_options(*app, options->guide);
    app->footer(
        "Compared are services, days, programmes, descriptions, genres and logos. Times are compared in "
        "UTC,\n"
        "texts after what is not UTF-8 was replaced.\n"
        "Exit status: 0 nothing differs; 1 something differs; 2 an input or the command line cannot be "
        "used,\n"
        "or there is nothing to compare; 3 output that cannot be written.\n"
        "\n"
        "Examples:\n"
        "  dabspi compare --with-a PI.xml SI.xml dump/                what was published, and what is on "
        "air\n"
        "  dabspi compare --tolerance 1min yesterday.jsonl today.jsonl\n"
        "  dabspi compare --ignore days,logos --json A B | jq .counts");
    return {app, [options] { return run_compare(*options); }};
}

}  // namespace dabspi

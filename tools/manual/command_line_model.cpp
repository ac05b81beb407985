#include "tools/manual/command_line_model.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <sstream>

namespace dabspi {

namespace {

// Line ends and runs of blanks become one blank: the help is broken for a terminal.
std::string one_line(const std::string& text) {
    std::istringstream words(text);
    std::string result;
    for (std::string word; words >> word;)
        result += (result.empty() ? "" : " ") + word;
    return result;
}

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> result;
    std::istringstream parts(text);
    for (std::string part; std::getline(parts, part, separator);)
        result.push_back(one_line(part));
    return result;
}

// "wrapper|core" as an option's text, or "{wrapper,core}" in what CLI11 says of its type; otherwise empty.
std::vector<std::string> choices_of(const std::string& text, const std::string& type) {
    const auto word = [](const std::string& each) {
        return !each.empty() && each.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-_") == each.npos;
    };
    std::vector<std::string> result = split(text, '|');
    if (result.size() > 1 && std::all_of(result.begin(), result.end(), word)) return result;
    const std::size_t open = type.find('{');
    const std::size_t close = type.find('}', open == type.npos ? 0 : open);
    if (open == type.npos || close == type.npos) return {};
    result = split(type.substr(open + 1, close - open - 1), ',');
    return std::all_of(result.begin(), result.end(), word) ? result : std::vector<std::string>();
}

value_kind kind_of(const std::string& value, const std::string& type) {
    // "ECC.SID.SCIDS", "DATE[Thh:mm]": a form to be filled in, for which nothing can be offered.
    if (value.find_first_of(".[") != value.npos) return value_kind::nothing;
    if (type.rfind("INT", 0) == 0 || type.rfind("UINT", 0) == 0 || type.rfind("FLOAT", 0) == 0)
        return value_kind::number;
    if (value == "RECORDING") return value_kind::recording;
    if (value == "DOCUMENT") return value_kind::document;
    if (value == "PLAN") return value_kind::plan;
    if (value == "NAME" || value == "ID" || value == "SERVICE") return value_kind::word;
    if (value == "DIR") return value_kind::directory;
    return value_kind::file;
}

argument_model model_of(const CLI::Option& option) {
    argument_model result;
    result.help = one_line(option.get_description());
    result.required = option.get_required();
    result.repeats = option.get_items_expected_max() > 1;
    const std::string type = option.get_type_name();
    const std::string text = one_line(option.get_option_text());
    if (option.nonpositional()) {
        for (const std::string& name : option.get_snames())
            result.names.push_back("-" + name);
        for (const std::string& name : option.get_lnames())
            result.names.push_back("--" + name);
        if (option.get_items_expected_max() == 0) return result;
        result.value = text.empty() ? type.substr(0, type.find_first_of(":[{ ")) : text;
    } else {
        result.names = {option.get_name(true)};
        result.value = result.names.front();
    }
    result.choices = choices_of(text, type);
    result.kind = result.choices.empty() ? kind_of(result.value, type) : value_kind::choice;
    // An operand keeps its name: its words may be many.
    if (result.kind == value_kind::choice && option.nonpositional()) {
        result.value.clear();
        for (const std::string& choice : result.choices)
            result.value += (result.value.empty() ? "" : "|") + choice;
    }
    return result;
}

command_model model_of(const CLI::App& app, const std::string& name) {
    command_model result;
    result.name = name;
    result.description = one_line(app.get_description());
    for (const CLI::Option* option : app.get_options()) {
        if (option->get_group().empty()) continue;  // hidden
        (option->nonpositional() ? result.options : result.operands).push_back(model_of(*option));
    }
    // The help comes first with CLI11, and last in a manual; it is the same everywhere.
    std::stable_partition(result.options.begin(), result.options.end(), [](const argument_model& each) {
        return each.names.back() != "--help" && each.names.back() != "--version";
    });
    return result;
}

}  // namespace

std::string short_name(const command_model& command) {
    return command.name.substr(command.name.rfind(' ') + 1);
}

std::vector<command_model> model_of(const CLI::App& app) {
    std::vector<command_model> result = {model_of(app, app.get_name())};
    for (const CLI::App* each : app.get_subcommands([](const CLI::App*) { return true; }))
        result.push_back(model_of(*each, app.get_name() + " " + each->get_name()));
    return result;
}

}  // namespace dabspi

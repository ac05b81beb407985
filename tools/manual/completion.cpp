#include "tools/manual/completion.h"

#include <algorithm>

namespace dabspi {

namespace {

// What comes before and after the part that the command line gives. `compopt` is refused outside of a
// completion, as in tests.
constexpr const char* kHead =
    R"(# bash completion for dabspi. Made from its command line when dabspi is built: change it there.

_dabspi_words() {
    mapfile -t COMPREPLY < <(compgen -W "$1" -- "$cur")
}
_dabspi_files() {
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen "$@" -- "$cur")
}
_dabspi_files_named() {
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -X "!$1" -- "$cur"; compgen -d -- "$cur")
}

_dabspi() {
    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD-1]} command= i
    COMPREPLY=()
    # "--option=value" comes as three words.
    if [[ $cur == = ]]; then
        cur=
    elif [[ $prev == = ]]; then
        prev=${COMP_WORDS[COMP_CWORD-2]}
    fi
    for ((i = 1; i < COMP_CWORD; i++)); do
        if [[ ${COMP_WORDS[i]} != -* ]]; then
            command=${COMP_WORDS[i]}
            break
        fi
    done
)";

std::string action_for(value_kind kind, const std::vector<std::string>& choices) {
    std::string words;
    switch (kind) {
        case value_kind::choice:
            for (const std::string& choice : choices)
                words += (words.empty() ? "" : " ") + choice;
            return "_dabspi_words '" + words + "'";
        case value_kind::recording: return "_dabspi_files_named '*.jsonl'";
        case value_kind::document: return "_dabspi_files_named '*.xml'";
        case value_kind::plan: return "_dabspi_files_named '*.json'";
        case value_kind::directory: return "_dabspi_files -d";
        case value_kind::file: return "_dabspi_files -f";
        case value_kind::number:
        case value_kind::word:
        case value_kind::nothing: break;
    }
    return ":";
}

// Operands are not counted: the same is offered for each. If they differ, all files are.
std::string action_for_operands(const std::vector<argument_model>& operands) {
    if (operands.empty()) return ":";
    const bool alike = std::all_of(operands.begin(), operands.end(), [&](const argument_model& each) {
        return each.kind == operands.front().kind && each.choices == operands.front().choices;
    });
    return alike ? action_for(operands.front().kind, operands.front().choices) : "_dabspi_files -f";
}

std::string all_names(const command_model& command) {
    std::string result;
    for (const argument_model& option : command.options)
        for (const std::string& name : option.names)
            result += (result.empty() ? "" : " ") + name;
    return result;
}

std::string branch(const command_model& command) {
    std::string values;
    for (const argument_model& option : command.options) {
        if (option.value.empty()) continue;
        std::string names;
        for (const std::string& name : option.names)
            names += (names.empty() ? "" : "|") + name;
        values +=
            "                " + names + ") " + action_for(option.kind, option.choices) + "; return ;;\n";
    }
    std::string result = "        " + short_name(command) + ")\n";
    if (!values.empty()) result += "            case $prev in\n" + values + "            esac\n";
    result += "            case $cur in\n";
    result += "                -*) _dabspi_words '" + all_names(command) + "' ;;\n";
    result += "                *) " + action_for_operands(command.operands) + " ;;\n";
    return result + "            esac\n            ;;\n";
}

}  // namespace

std::string completion(const std::vector<command_model>& commands) {
    std::string first;
    for (std::size_t each = 1; each < commands.size(); ++each)
        first += short_name(commands[each]) + " ";
    std::string result = kHead;
    result += "    case $command in\n";
    result += "        '') _dabspi_words '" + first + all_names(commands.front()) + "' ;;\n";
    for (std::size_t each = 1; each < commands.size(); ++each)
        result += branch(commands[each]);
    return result + "    esac\n}\n\ncomplete -F _dabspi dabspi\n";
}

}  // namespace dabspi

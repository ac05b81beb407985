// A command line as its manual and its completion see it: taken from CLI11, which is the only place that
// states it.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace dabspi {

// What the value of an option, or an operand, stands for.
enum class value_kind { nothing, number, word, choice, recording, document, plan, directory, file };

struct argument_model {
    std::vector<std::string> names;  // "-h", "--help"; of an operand its one name, "RECORDING"
    std::string value;               // as the manual writes it, "DIR"; empty: the option takes none
    value_kind kind = value_kind::nothing;
    std::vector<std::string> choices;  // of kind choice
    std::string help;                  // one line
    bool required = false;
    bool repeats = false;
};

struct command_model {
    std::string name;  // "dabspi", "dabspi replay"
    std::string description;
    std::vector<argument_model> options;
    std::vector<argument_model> operands;
};

// The last word: "replay".
std::string short_name(const command_model& command);

// The whole command first, then its subcommands in the order of their definition.
std::vector<command_model> model_of(const CLI::App& app);

}  // namespace dabspi

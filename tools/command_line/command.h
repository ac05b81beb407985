// What every subcommand of dabspi looks like to main.
#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace dabspi {

// Exit statuses of every subcommand.
constexpr int kExitDone = 0;
constexpr int kExitMalformed =
    1;  // the input was read, and is not as it should be: the answer of a checking command
constexpr int kExitUnusable = 2;  // bad usage, or an input that cannot be used: nothing was done
constexpr int kExitFailed =
    3;  // the input was good, something else went wrong: output that cannot be written

// A subcommand: its part of the command line, and its work, done after the command line was read.
struct command {
    CLI::App* arguments = nullptr;  // owned by the whole command line
    std::function<int()> run;  // gives the exit status; may throw std::exception with a text for the user
};

}  // namespace dabspi

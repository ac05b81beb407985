// Runs the dabspi command, as a user would, and tells how it ended.
#pragma once

#include <map>
#include <string>
#include <vector>

struct finished_command {
    int status = -1;  // exit status; -1 when a signal ended it
    int signal = 0;
    std::string out;
    std::string err;
};

struct command_input {
    std::vector<std::string> arguments;
    std::string standard_input = {};
    std::string directory = {};                           // to run in; empty: the test's own
    std::map<std::string, std::string> environment = {};  // added to the test's own
    std::string standard_output = {};                     // a file to write to; empty: captured
    bool standard_output_closed = false;
    int signal_at_first_output =
        0;  // sent as soon as anything is printed; the output is read to its end only then
    bool close_after_first_output = false;
};

finished_command run_dabspi(const command_input& input);

// All of them at once. What each prints must fit into a pipe.
std::vector<finished_command> run_dabspi_together(const std::vector<command_input>& inputs);

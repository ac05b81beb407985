// The text of one manual page: what the command line cannot tell. A file NAME.manual.1 in the manual's own
// language (man macros):
//
//     .SH DESCRIPTION
//     ...
//     .SH OPTIONS
//     .\" option --no-wait
//     What is added to this option's help.
//     .SH EXAMPLES
//     ...
//
// DESCRIPTION comes first and is needed. OPTIONS, if there is one, holds additions to options or operands and
// nothing else. NAME, SYNOPSIS, COMMANDS and SEE ALSO are made from the command line.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tools/manual/command_line_model.h"

namespace dabspi {

struct manual_text {
    std::string description;                     // without its heading
    std::map<std::string, std::string> options;  // by name: "--no-wait", "RECORDING"
    std::vector<std::pair<std::string, std::string>>
        sections;  // headings and texts, in the order of the file
};

// Reads a text; `name` is the file's, for messages. Throws std::runtime_error, FILE:LINE: what is wrong,
// when the file is not as above, or names an option that `command` does not have.
manual_text parse_manual_text(const std::string& text, const std::string& name, const command_model& command);

// From file names, the text of each command. Throws std::runtime_error with a text for the developer when a
// command has none, when a file belongs to no command, or when one cannot be read.
std::map<std::string, manual_text> read_manual_texts(const std::vector<std::string>& files,
                                                     const std::vector<command_model>& commands);

}  // namespace dabspi

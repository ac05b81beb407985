// Writes manual pages, as roff with man macros.
#pragma once

#include <string>
#include <vector>

#include "tools/manual/command_line_model.h"
#include "tools/manual/manual_text.h"

namespace dabspi {

// A text as roff shows it, character for character. A "-" becomes the one that can be copied into a shell.
std::string roff(const std::string& text);

// The name of a command's page: "dabspi", "dabspi-replay".
std::string page_name(const command_model& command);

// The page of commands[which], commands[0] being the whole command, whose page lists the others. Without a
// date: the same sources give the same bytes.
std::string manual_page(const std::vector<command_model>& commands, std::size_t which,
                        const manual_text& words, const std::string& version);

}  // namespace dabspi

// Messages of the command to its user.
#pragma once

#include <string>
#include <vector>

namespace dabspi {

// "dabspi: TEXT" and a line end on standard error, in one piece.
void print_error(const std::string& text);

// Each in a line, not without end: after a hundred, "and 50 more errors".
void print_errors(const std::vector<std::string>& messages, const std::string& what);

// "cannot write to standard output: No space left on device"; nothing for EPIPE, as a reader that has read
// enough is no reason for a message.
void print_output_error(int error);

}  // namespace dabspi

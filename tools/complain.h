// Messages of the command to its user.
#pragma once

#include <string>

namespace dabspi {

// "dabspi: TEXT" and a line end on standard error, in one piece.
void complain(const std::string& text);

}  // namespace dabspi

// Text for a terminal, in lines of at most 100 characters.
#pragma once

#include <string>
#include <string_view>

namespace dabspi::check {

// Every line begins with `indent`; paragraphs are separated by an empty line.
std::string wrapped_text(std::string_view text, const std::string& indent);

}  // namespace dabspi::check

// The word that was meant, for what was mistyped.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace dabspi {

// The one of `words` that is nearest to `mistyped`, by letters that are put in, left out, changed or
// exchanged with their neighbour; empty when none is near. Long words are not looked at.
std::string nearest(std::string_view mistyped, const std::vector<std::string>& words);

// "; did you mean check?", or nothing.
std::string did_you_mean(std::string_view mistyped, const std::vector<std::string>& words);

}  // namespace dabspi

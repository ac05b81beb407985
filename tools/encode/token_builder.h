// Chooses the texts that tokens stand for, so that an object gets as small as it can get by taking, again and
// again, the substring that saves most.
//
// The choice depends on the texts alone: equal savings go to the longer substring, then to the one that sorts
// first. Pieces begin and end between characters. Sixteen tokens at most, of 255 bytes at most; none when
// none saves a byte, its entry in the table counted.
#pragma once

#include <string_view>
#include <vector>

#include "tools/encode/coded_node.h"

namespace dabspi {

token_texts choose_tokens(const std::vector<std::string_view>& texts);

}  // namespace dabspi

// What there is to say of a document that was encoded.
#pragma once

#include <string>
#include <vector>

#include "tools/encode/document_encoder.h"

namespace dabspi {

// All but errors: a line for each kind of warning (with
// `verbose` for each), and a line each for what was taken otherwise than it is written, and for what was left
// out: "si.xml: left out: bearers of other domains (3), elements that have no coding (1)". `hint` follows
// such a line where the places are not listed.
std::vector<std::string> messages_of(const encoded_document& of, const std::string& name, bool verbose,
                                     const std::string& hint = "; --verbose lists them");

}  // namespace dabspi

// A programme guide of what is named on the command line: recordings, multiplexes, folders as receivers dump
// them, single objects, XML documents (ETSI TS 102 818), "-" for a recording or a multiplex on standard
// input.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "tools/encode/local_offset.h"
#include "tools/guide/programme_guide.h"
#include "tools/spi/values.h"

namespace dabspi::guide {

struct guide_settings {
    std::size_t limit = 256;                             // MiB that are read of one input
    std::optional<local_offset> local = {};              // of documents, see encode_options
    std::optional<spi_object::content_id> service = {};  // of documents, see encode_options
};

struct guide_input {
    programme_guide guide;
    std::vector<std::string> errors;  // printable; with any, the guide is not to be used
    std::vector<std::string> said;    // of documents: what was converted or left out; printable
};

// In the order of `paths`: what comes later replaces what has the same content name.
guide_input read_guide(const std::vector<std::string>& paths, const guide_settings& settings);

}  // namespace dabspi::guide

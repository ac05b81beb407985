// --offset and --zone: the local time of XML documents, on the command line.
#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>

#include "tools/encode/local_offset.h"

namespace dabspi {

struct local_time_options {
    std::string offset;
    std::string zone;

    // Nothing where neither was given. Both were checked when the command line was parsed.
    std::optional<local_offset> value() const;
};

// `to` is filled when the command line is parsed.
void add_local_time_options(CLI::App& app, local_time_options& to);

}  // namespace dabspi

// The options that all subcommands share which read programme guides.
#pragma once

#include <CLI/CLI.hpp>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/encode/local_time_options.h"
#include "tools/guide/guide_input.h"

namespace dabspi::guide {

struct guide_options {
    local_time_options local_time;
    std::string service;
    std::size_t limit = 256;
};

// --offset, --zone, --service and --limit. `to` is filled when the command line is parsed.
void add_guide_options(CLI::App& app, guide_options& to);

// Reads the guide, and says what there is to say on standard error. Nothing where the input cannot be used.
std::optional<programme_guide> read_guide_of(const std::vector<std::string>& paths,
                                             const guide_options& options);

// For the help of an argument that takes such inputs.
extern const char* const kGuideInputs;

}  // namespace dabspi::guide

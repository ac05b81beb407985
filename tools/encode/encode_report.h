// What `dabspi encode` says of the objects that it made.
#pragma once

#include <string>
#include <vector>

#include "tools/encode/broadcast_object.h"

namespace dabspi {

struct made_file {
    std::string source;  // the XML file
    std::string file;    // the object; "-" for standard output
    broadcast_object object;
};

struct table_options {
    bool tokens = false;   // with what they save
    bool verbose = false;  // and with the tokens themselves
};
// Lines for a person, a heading first; of several objects, what tokens save in all.
std::string file_table(const std::vector<made_file>& files, const table_options& options);

// One JSON object, without line end.
std::string file_json(const made_file& file);

}  // namespace dabspi

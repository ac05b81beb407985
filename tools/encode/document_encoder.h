// An XML document (ETSI TS 102 818) becomes binary SPI objects (ETSI TS 102 371), by the one table of
// tools/spi/schema.h.
//
//   const encoded_document made = encode_document(source, {});
//   for (const encoded_object& each : made.objects) ... write_object(each.top) ...
//
// A document with `services` gives one object for each ensemble that their bearers name; every other document
// gives one object. The order of the document is kept but for two things: attributes stand in the order of
// their tags, and the bearers of a service before its first mediaDescription, because receivers file a logo
// under the bearer that they have read by then. Nothing is thrown for a bad document: with `errors`, there
// are no objects.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tools/encode/coded_node.h"
#include "tools/encode/source_note.h"
#include "tools/encode/xml_source.h"
#include "tools/spi/values.h"

namespace dabspi {

struct encode_options {
    // Codes as much as can be coded; what is wrong becomes a warning.
    bool lenient = false;
    std::vector<spi_object::ensemble_id> ensembles = {};  // only these; none: all
};

struct encoded_object {
    coded_node top;
    std::optional<spi_object::ensemble_id> ensemble;  // of service information with one ensemble
};

struct left_out {
    std::string what;  // "bearers of other domains"
    source_note note;
};

struct encoded_document {
    std::vector<encoded_object> objects;
    std::vector<source_note> errors;
    std::vector<source_note> warnings;
    std::vector<left_out> omitted;  // has no coding; no fault of the document

    // "bearers of other domains" -> 3
    std::map<std::string, std::size_t> omitted_counts() const;
};

encoded_document encode_document(const xml_source& source, const encode_options& options);

}  // namespace dabspi

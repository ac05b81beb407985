// An XML document (ETSI TS 102 818) becomes binary SPI objects (ETSI TS 102 371), by the one table of
// tools/spi/schema.h.
//
//   const encoded_document made = encode_document(source, {});
//   for (const encoded_object& each : made.objects) ... write_object(each.top) ...
//
// A document with `services` gives one object for each ensemble that their bearers name; every other document
// gives one object. The order of the document is kept but for two things: attributes stand in the order of
// their tags, and the bearers of a service before its first mediaDescription, because receivers file a logo
// under the bearer that they have read by then. Documents of earlier editions are taken as what they mean
// today (`converted`). Nothing is thrown for a bad document: with `errors`, there are no objects. Work and
// memory are linear in the document and in the objects made of it.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tools/encode/coded_node.h"
#include "tools/encode/counted_notes.h"
#include "tools/encode/local_offset.h"
#include "tools/encode/source_note.h"
#include "tools/encode/xml_source.h"
#include "tools/spi/values.h"

namespace dabspi {

struct encode_options {
    // Codes as much as can be coded; what is wrong becomes a warning.
    bool lenient = false;
    std::vector<spi_object::ensemble_id> ensembles = {};  // only these; none: all
    // What programme information is of that names no service, and where the one service of a document is that
    // has no bearer of the DAB domain.
    std::optional<spi_object::content_id> service = {};
    // Times without a zone are local times of this offset, and times in UTC get it coded; none: neither.
    std::optional<local_offset> local = {};
    // Of all objects of a document, in bytes: a service on many ensembles is written once for each.
    std::size_t most_bytes = 64 * 1024 * 1024;
};

struct encoded_object {
    coded_node top;
    std::optional<spi_object::ensemble_id> ensemble;  // of service information with one ensemble
};

struct encoded_document {
    std::vector<encoded_object> objects;
    std::vector<source_note> errors;
    std::vector<source_note> warnings;
    std::vector<source_note> remarks;  // coded as it stands, and receivers show it otherwise or not at all
    std::size_t more_warnings = 0;     // beyond the first thousand
    counted_notes omitted;             // has no coding; no fault of the document
    counted_notes converted;           // written otherwise than in the edition of today; coded as it is meant

    // "bearers of other domains" -> 3
    const std::map<std::string, std::size_t>& omitted_counts() const { return omitted.counts(); }
};

encoded_document encode_document(const xml_source& source, const encode_options& options);

}  // namespace dabspi

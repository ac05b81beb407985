// One inspected SPI object, whole: its tree, and what a receiver takes from it. What the printers print.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tools/inspect/inspected.h"
#include "tools/receiver/receiver_view.h"
#include "tools/spi/decode.h"

namespace dabspi {

// Where the ensemble comes from that the receiver is taken to be on.
enum class ensemble_source {
    named,  // by the command line or the recording
    own,    // the first one that the object names
    none,   // the object names none either; the receiver knows none
};

struct object_report {
    const inspected_body* body;
    spi_object::object tree;
    spi_object::receiver_view taken;
    ensemble_source ensemble_from = ensemble_source::none;
};

// `ensemble`: the one asked for on the command line, else that of the recording, else the object's own.
object_report inspect_object(const inspected_body& body, std::optional<std::uint16_t> ensemble);

// "programme information, 1812 bytes, well formed"
std::string summary(const object_report& of);

// "day.jsonl:12 (and 3 more lines, to 480): w20260310d1A01.EHB"
std::string heading(const inspected_body& of);

}  // namespace dabspi

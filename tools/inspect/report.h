// One inspected SPI object, whole: its tree, and what a receiver takes from it. What the printers print.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tools/inspect/inspected.h"
#include "tools/spi/decode.h"
#include "tools/spi/receiver_view.h"

namespace dabspi {

struct object_report {
    const inspected_body* body;
    spi_object::object tree;
    spi_object::receiver_view taken;
    bool ensemble_known = false;  // from a recording or the command line; else it is the object's own
};

// `ensemble`: the one asked for on the command line, else that of the recording, else the object's own.
object_report inspect_object(const inspected_body& body, std::optional<std::uint16_t> ensemble);

// "programme information, 1812 bytes, well formed"
std::string summary(const object_report& of);

// "day.jsonl:12 (and 3 more lines, to 480): w20260310d1A01.EHB"
std::string heading(const inspected_body& of);

}  // namespace dabspi

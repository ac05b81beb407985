// Reads a binary SPI object into a tree (tools/spi/tree.h).
//
// Any bytes are an object: nothing is thrown for content, and nothing outside the bytes is looked at. Lengths
// that reach out of their parent are cut there, so that every byte is read at most once and the work is
// linear in the object; what a receiver makes of such lengths is said in the problem's text. Nodes are
// limited to 250,000, nesting to 24 levels, expanded text to 16 times the object and 64 KiB: what is beyond
// is left out and said so.
#pragma once

#include <optional>

#include "tools/spi/byte_view.h"
#include "tools/spi/tree.h"

namespace dabspi::spi_object {

struct decode_options {
    // MOT ContentSubType that the object came with: 0 service information, 1 programme information, 2 group
    // information. The receiver goes by it alone. Without one, the object's own top element tells.
    std::optional<std::uint16_t> content_subtype = {};
};

object decode(byte_view body, const decode_options& options = {});

}  // namespace dabspi::spi_object

// An object as text for people: the tree, one line a node, with what is wrong where it is wrong, and what a
// receiver takes. No line holds a byte that could drive a terminal.
#pragma once

#include <string>

#include "tools/inspect/report.h"
#include "tools/terminal/colours.h"

namespace dabspi {

struct text_style {
    bool hex = false;  // the bytes beside the tree
    colouring colours{false};
};

std::string text_report(const object_report& of, const text_style& style);

// The one line of an image, or of a body that is neither.
std::string text_of_other(const inspected_body& of, const text_style& style);

// The value of a node in the words of a person: "2026-03-10T07:00:00+01:00 = 2026-03-10T06:00:00Z",
// "\"News at Ten\" coded \"<01> at Ten\"". Empty for none.
std::string shown_value(const spi_object::node& of, spi_object::byte_view body);

}  // namespace dabspi

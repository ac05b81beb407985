// A whole page around its content: one file, nothing from outside.
#pragma once

#include <string>

#include "tools/recording/recording.h"

namespace dabspi::check::html {

// Colours in light and dark, text, headings, links, what has the focus.
extern const char* const kBaseStyle;

// `style` follows the base style. Nothing but `script` runs, and nothing is fetched, whatever stands in the
// page.
std::string page_around(const std::string& title, const char* style, const std::string& body,
                        const std::string& script = {});

// A data: URI of an image that every browser shows, and that does not fill the reader's memory; empty for any
// other bytes.
std::string image_uri(const bytes& body);

}  // namespace dabspi::check::html

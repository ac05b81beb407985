// Pieces of a page: texts that cannot become markup, links, images.
#pragma once

#include <string>
#include <string_view>

#include "tools/recording/recording.h"

namespace dabspi::check::html {

// For element content and for attributes in double quotes: markup characters as entities; what is not UTF-8
// as U+FFFD; control characters and those that change the writing direction made visible.
std::string escaped(std::string_view text);

// The beginning of a long name, and an ellipsis: tokens can make a name of a few bytes very long, and a page
// repeats it.
std::string shortened(std::string_view text);

// The same as `escaped` for a text of the broadcast, shortened, and kept from mixing its direction with its
// surroundings.
std::string from_broadcast(std::string_view text);

// <a href="#id">text</a>; the text as it is.
std::string link_to(const std::string& id, const std::string& markup);

std::string data_uri(const char* mime, const bytes& content);

}  // namespace dabspi::check::html

// Logos in words.
#pragma once

#include <string>

#include "tools/check/history.h"

namespace dabspi::check {

const char* size_text(std::uint8_t size_code);  // "128x128", "of unknown size"
const char* format_text(std::uint8_t format);   // "PNG"
// "\"s1-128.png\", PNG 128x128 of E0.1A01.0"
std::string logo_text(const announcement& of);

}  // namespace dabspi::check

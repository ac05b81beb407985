// Numbers that tell versions of objects apart. Equal for equal content; unequal content has the same number
// by chance only (one in 2^64). Pure functions, any thread.
#pragma once

#include <cstdint>

#include "tools/air/mot/object_header.h"

namespace dabspi::air {

// Of the content's type and name.
std::uint64_t name_hash(const object_header& header);

// Of these, of the scope and of the body: what makes an object news.
std::uint64_t version_hash(const object_header& header, byte_view body);

}  // namespace dabspi::air

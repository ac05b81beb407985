// Tells the containers of frames apart by their first bytes, wherever in them the recording begins. Pure.
#pragma once

#include <cstddef>
#include <optional>

#include "tools/spi/byte_view.h"

namespace dabspi::air {

using spi_object::byte_view;

enum class container_form { raw_eti, streamed_eti, framed_eti, edi, capture };

// So many bytes are enough for a recording that begins anywhere in a frame and is not damaged there.
constexpr std::size_t kFormSeen = 24 * 1024;

// `whole`: the input ends behind these bytes.
std::optional<container_form> form_of(byte_view first, bool whole);

// "raw ETI(NI)", ...
const char* form_words(container_form form);

}  // namespace dabspi::air

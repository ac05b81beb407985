// How the library itself reads single values: its own value types, run over the bytes of one attribute.
#pragma once

#include <optional>

#include "src/parse/serv_elem_id.h"
#include "src/parse/spi_time_point.h"
#include "tools/spi/byte_view.h"

namespace dabspi::spi_object {

spi::SpiTimePoint receiver_time(byte_view attribute_content);
spi::ServElemId receiver_service(byte_view attribute_content);
// The ensemble identifier that the library takes a content ID to have.
std::uint16_t receiver_ensemble(byte_view attribute_content);

// "2026-03-10 07:00", as the library tells it to its listener.
std::string receiver_time_text(const spi::SpiTimePoint& time, std::uint16_t offset_seconds = 0);
// "E1.C221.0": ECC, SId, SCIdS.
std::string receiver_service_text(const spi::ServElemId& service);

}  // namespace dabspi::spi_object

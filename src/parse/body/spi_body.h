// Which SPI objects are read, and by which parser.
#pragma once

#include <cstdint>

#include "src/parse/body/spi_body_listener.h"
#include "src/parse/mot_body.h"
#include "src/parse/serv_elem_id.h"

namespace spi {

// Reads service and programme information, as the MOT ContentSubType says, and frees the body. False for
// other sub-types; the body is then as it was. `received_with` is the service that the object came with,
// `eid` the ensemble being received, 0 while none is known.
bool read_spi_body(std::uint16_t content_subtype, MotBody&& body, const ServElemId& received_with,
                   std::uint16_t eid, SpiBodyListener& listener);

}  // namespace spi

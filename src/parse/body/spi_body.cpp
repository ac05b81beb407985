#include "src/parse/body/spi_body.h"

#include <utility>

#include "src/parse/body/pi_body_parser.h"
#include "src/parse/body/si_body_parser.h"
#include "src/parse/mot_content.h"

namespace spi {

bool read_spi_body(std::uint16_t content_subtype, MotBody&& body, const ServElemId& received_with,
                   std::uint16_t eid, SpiBodyListener& listener) {
    switch (content_subtype) {
        case kMotServiceInformation:
            SiBodyParser(listener).parse(received_with, std::move(body));
            return true;
        case kMotProgrammeInformation: PiBodyParser(listener, eid).parse(std::move(body)); return true;
        default: return false;
    }
}

}  // namespace spi

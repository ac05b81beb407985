#include "src/parse/body/si_body_parser.h"

#include <utility>

#include "src/parse/reader/spi_tags.h"

namespace spi {

SiBodyParser::SiBodyParser(SpiBodyListener& listener) : listener_(listener) {}

int SiBodyParser::parse(ServElemId seid, MotBody&& body) {
    seid_ = seid;
    ReadBuffer buffer(std::move(body));
    while (buffer.in_body()) {
        spi_parseable element(buffer);
        if (element.tag == tag::service_information) parse_si(element);
    }
    return 0;
}

// serviceInformation (TS 102 371, element 0x03)
int SiBodyParser::parse_si(spi_parseable& service_information) {
    while (service_information.has_more()) {
        spi_parseable child(service_information);
        switch (child.tag) {
            case tag::token_table: tokens_.parse(child); break;
            case tag::ensemble: parse_ensemble(child); break;
            default: break;  // passed over when `child` closes
        }
    }
    return 0;
}

// ensemble (TS 102 371, element 0x26)
int SiBodyParser::parse_ensemble(spi_parseable& ensemble) {
    while (ensemble.has_more()) {
        offset_ = ensemble.buf.pos;
        spi_parseable child(ensemble);
        if (child.tag == tag::service) parse_service(child);
    }
    return 0;
}

int SiBodyParser::parse_service(spi_parseable& service) {
    SiServiceInfo info;
    info.parse(service, tokens_);
    listener_.service_read(seid_, std::move(info), offset_);
    return 0;
}

}  // namespace spi

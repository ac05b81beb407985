// Walks one service information object (TS 102 371, serviceInformation) and tells a listener of each service,
// with the logos that it announces. Built for one object, on the stack; used once.
//
// There are no errors; short or missing attributes leave sentinel values. A service counts even without name,
// bearer or logos.
#pragma once

#include "src/parse/body/spi_body_listener.h"
#include "src/parse/mot_body.h"
#include "src/parse/reader/spi_parseable.h"
#include "src/parse/reader/spi_token_table.h"
#include "src/parse/serv_elem_id.h"

namespace spi {

class SiBodyParser {
 public:
    explicit SiBodyParser(SpiBodyListener& listener);

    // Takes over the body, walks it, frees it. `seid` is the service that the object was received with. All
    // return 0.
    int parse(ServElemId seid, MotBody&& body);
    int parse_si(spi_parseable& service_information);
    int parse_ensemble(spi_parseable& ensemble);
    int parse_service(spi_parseable& service);

 private:
    SpiBodyListener& listener_;
    ServElemId seid_;
    std::uint32_t offset_ = 0;  // of the element in an ensemble that is being read
    SpiTokenTable tokens_;  // one for the whole object: it lives on over several serviceInformation elements
};

}  // namespace spi

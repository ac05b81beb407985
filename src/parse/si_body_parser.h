// Walks one service information object (TS 102 371, serviceInformation) and sends each service, with the
// logos that it announces, to the logo store. Built by the parser worker for one object, on its stack and
// thread; used once.
//
// Nothing is reported; short or missing attributes leave sentinel values. A service is sent even without
// name, bearer or logos.
#pragma once

#include "src/event/event_proc.h"
#include "src/parse/mot_body.h"
#include "src/parse/serv_elem_id.h"
#include "src/parse/spi_parseable.h"
#include "src/parse/spi_token_table.h"

namespace spi {

class SiBodyParser {
 public:
    // Events are sent in the name of `parser`.
    explicit SiBodyParser(event_proc& parser);

    // Takes over the body, walks it, frees it. `seid` is the service that the object was received with. All
    // return 0.
    int parse(ServElemId seid, MotBody&& body);
    int parse_si(spi_parseable& service_information);
    int parse_ensemble(spi_parseable& ensemble);
    int parse_service(spi_parseable& service);

 private:
    event_proc& parser_;
    ServElemId seid_;
    SpiTokenTable tokens_;  // one for the whole object: it lives on over several serviceInformation elements
};

}  // namespace spi

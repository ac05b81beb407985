// Walks one programme information object (TS 102 371, epg) and tells a listener of each programme. Built for
// one object, on the stack; used once.
//
// There are no errors. Truncated or malformed content leaves sentinel values in the fields concerned; a
// programme counts as read all the same as long as a service was found for it, and is dropped otherwise.
#pragma once

#include <cstdint>

#include "src/parse/body/spi_body_listener.h"
#include "src/parse/ensembles_named.h"
#include "src/parse/mot_body.h"
#include "src/parse/reader/spi_parseable.h"
#include "src/parse/reader/spi_token_table.h"
#include "src/parse/serv_elem_id.h"
#include "src/parse/spi_time_point.h"

namespace spi {

// What the schedule is for. Once a service has been read it holds for every later programme of the object: it
// is not reset between schedules.
struct PiScheduleScope {
    ServElemId seid;        // zero until a scope or content identifier of the right ensemble is read
    std::uint16_t eid = 0;  // identifiers on other ensembles are not accepted
    SpiTimePoint start;     // coded validity; kept, not used
    SpiTimePoint stop;
    EnsemblesNamed named;  // by all of these identifiers

    // All return 0.
    int parse(spi_parseable& scope);
    int parse_seid(spi_parseable& service_scope, ServElemId& service);
    int parse_content_id(spi_parseable& element);
};

class PiBodyParser {
 public:
    // `eid` is the ensemble being received, 0 while none is known.
    PiBodyParser(SpiBodyListener& listener, std::uint16_t eid);

    // Takes over the body, walks it, frees it. All return 0.
    int parse(MotBody&& body);
    int parse_epg(spi_parseable& epg);
    int parse_schedule(spi_parseable& schedule);
    int parse_programme(spi_parseable& programme);

 private:
    const std::uint16_t eid_;
    SpiBodyListener& listener_;
    PiScheduleScope scope_;
    SpiTokenTable tokens_;
    std::uint32_t offset_ = 0;  // of the element in a schedule that is being read
};

}  // namespace spi

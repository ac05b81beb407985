// The guide as an XMLTV document: what most programs that show programme guides read.
#pragma once

#include <string>

#include "tools/guide/programme_guide.h"

namespace dabspi {

// Valid against the XMLTV document type. A channel for each service, a programme for each that has a time;
// programmes without a duration end with the next one's start, or have no end. Times are local, with the
// offset that was coded. Logos that the input holds are inside the document, others are linked.
std::string xmltv_of(const guide::programme_guide& of);

// "0.c221.ce1.dab": SCIdS, SId, country code and ECC, as in the names of RadioDNS.
std::string xmltv_channel(const guide::service_id& id);

}  // namespace dabspi

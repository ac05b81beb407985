// The guide as XML documents (ETSI TS 102 818), laid out as a web server of RadioDNS serves them.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tools/guide/programme_guide.h"

namespace dabspi {

// Files by their path below the server's root:
//   radiodns/spi/3.1/SI.xml
//   radiodns/spi/3.1/dab/GCC/EID/SID/SCIDS/20260310_PI.xml  a service's programmes that begin on that day
//   logos/NAME                                              the pictures that the input holds
// A service that is on several ensembles has its schedules below each. Everything that the objects say of a
// programme is in its document, in the order of their starts. `said`: names that were changed to be names of
// files.
std::map<std::string, std::string> spi_documents(const guide::programme_guide& of,
                                                 std::vector<std::string>& said);

}  // namespace dabspi

// One service as service information describes it: its identifier, its name and the logos that it announces.
#pragma once

#include <list>
#include <string>

#include "src/parse/serv_elem_id.h"
#include "src/parse/si_media_info.h"
#include "src/parse/spi_logo_info.h"

namespace spi {

class spi_parseable;
class SpiTokenTable;

struct SiServiceInfo {
    ServElemId id;                 // from the bearer; zero if none
    std::string name;              // after token expansion; empty if none
    std::list<SpiLogoInfo> logos;  // one for each multimedia element, in their order

    // Reads a service element (TS 102 371, 0x28). These all return 0; nothing is reported.
    int parse(spi_parseable& service, SpiTokenTable& tokens);
    int parse_name(spi_parseable& name_element, SpiTokenTable& tokens);
    int parse_bearer(spi_parseable& bearer);
    int parse_mediadesc(spi_parseable& description, SpiTokenTable& tokens);
    int parse_multimedia(spi_parseable& multimedia, SpiTokenTable& tokens, SiMediaInfo& media);
};

}  // namespace spi

// Working record of one multimedia element of a service (TS 102 371, 0x2B): classifies an announced logo by
// format and by size.
#pragma once

#include <cstdint>
#include <string>

#include "src/parse/serv_elem_id.h"
#include "src/parse/spi_logo_info.h"

namespace spi {

class spi_parseable;
class SpiTokenTable;

struct SiMediaInfo {
    ServElemId id;  // the service, as known when the element is reached
    std::string mime;
    std::string url;          // the image's MOT content name
    std::uint16_t width = 0;  // pixels; 0 if absent, 65535 if its attribute is too short
    std::uint16_t height = 0;

    // Only the first non-empty MIME type and the first non-empty URL of an element count. Both return 0.
    int parse_mime(spi_parseable& attr, SpiTokenTable& tokens);
    int parse_url(spi_parseable& attr, SpiTokenTable& tokens);

    // Logo type: 4 (colour square) means 32 x 32, 6 (colour rectangle) 112 x 32; others change nothing. A
    // width or height read later overrides this, one read earlier is overridden.
    void set_type(unsigned char type);

    // The size code of SpiLogoInfo. A dimension of 0 first takes the value of the other one (the record is
    // changed).
    int get_fmt();

    // What stands after the last "." of the URL, or the whole URL without one; at most 8 characters.
    std::string get_ext() const;

    // The announcement. The format follows the MIME type, else the extension; extensions are compared as they
    // are written, so "Png" and "JPEG" are unknown. Deliberate.
    SpiLogoInfo logo_info() &;
    // The same of a record that is done with: its URL moves on. A crafted one is long, and is not held twice.
    SpiLogoInfo logo_info() &&;

 private:
    SpiLogoInfo classified();  // everything but the name
};

}  // namespace spi

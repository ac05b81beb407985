// The text of name elements, which programmes and services read alike.
#pragma once

#include <string>

namespace spi {

class spi_parseable;
class SpiTokenTable;

// Reads the text child (0x01) of a name element into `name`, tokens expanded. Each text child replaces what
// stood there: the last one wins, also when it is empty.
void read_name(spi_parseable& name_element, const SpiTokenTable& tokens, std::string& name);

}  // namespace spi

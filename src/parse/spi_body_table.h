// Which SPI objects have been parsed already: a carousel repeats them all day.
//
// On the parser worker's thread only. Grows with every new service and content name, until it is emptied.
// Ordered: a broadcast chooses the keys, and could give them all one hash value.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "src/parse/serv_elem_id.h"

namespace spi {

class SpiBodyTable {
 public:
    // True when an object of this name and size (bytes) was seen on this service; otherwise it is remembered.
    // Only the size tells a new version: an object that changes without changing its size is deliberately
    // taken as already parsed.
    bool has_body(const std::string& name, unsigned size, const ServElemId& service);

    void clear() { bodies_.clear(); }

 private:
    using name_table = std::map<std::string, std::uint32_t>;
    std::map<ServElemId, name_table> bodies_;
};

}  // namespace spi
